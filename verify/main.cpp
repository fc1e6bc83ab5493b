// Looks at all facts of the table, and writes the report.
#include "check.h"
#include "fact.h"
#include "programs.h"
#include "report.h"
#include "system.h"
#include "terminal/zip.h"

#include "host/files.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>

namespace {

using namespace verify;
namespace fs = std::filesystem;

constexpr int somethingDiffers = 1;
constexpr int kitFailed = 2;

constexpr char usage[] =
    "verify [--import] [--docker] [--slow] [--ask] [--only ID,...] [--report FOLDER]\n"
    "\n"
    "Compares this computer with what the product takes for granted. Alone it changes nothing.\n"
    "  --import  imports a small distribution under a name of its own, and removes it again\n"
    "  --docker  makes a small image and a container, and removes them again\n"
    "  --slow    also what takes a minute\n"
    "  --ask     also what a person must judge\n"
    "Status: 0 all as claimed, 1 something differs, 2 this program has failed or was interrupted.\n";

std::vector<std::string> splitAtCommas(const std::string& list)
{
    std::vector<std::string> parts(1);
    for (const char letter : list) {
        if (letter == ',') {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    return parts;
}

// Nothing when the command line means nothing.
std::optional<Options> optionsOf(const std::vector<std::string>& arguments)
{
    Options options;
    for (auto next = arguments.begin(); next != arguments.end(); ++next) {
        const bool hasValue = next + 1 != arguments.end();
        if (*next == "--import") {
            options.import = true;
        } else if (*next == "--docker") {
            options.docker = true;
        } else if (*next == "--slow") {
            options.slow = true;
        } else if (*next == "--ask") {
            options.ask = true;
        } else if (*next == "--only" && hasValue) {
            options.only = splitAtCommas(*++next);
        } else if (*next == "--report" && hasValue) {
            options.reportFolder = *++next;
        } else {
            return std::nullopt;
        }
    }
    return options;
}

std::string now(const char* form)
{
    const std::time_t time = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::array<char, 32> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), form, std::gmtime(&time));
    return {text.data(), size};
}

// What would make the programs answer otherwise than on a machine where nobody has set anything.
void forgetVariables()
{
    for (const char* name : {"WSL_UTF8", "WSLENV", "WSL_DISABLE_WARNINGS", "USE_WSL", "USE_DOCKER_REPOSITORY",
                             "AUX_DOCKER_ARGS", "KORVANE_ROOT", "KORVANE_RELEASE"}) {
        setVariable(name, std::nullopt);
    }
}

void namePrograms(Names& names, const Machine& machine)
{
    const fs::path programs = programFolder();
    const fs::path kit = programs.parent_path().parent_path();
    names.set("<kit>", utf8(kit));
    names.set("<rootfs>", utf8(kit / "rootfs.tar.gz"));
    names.set("<probe>", utf8(programs / "probe.exe"));
    names.set("<kelpctl>", utf8(programs / "kelpctl.exe"));
    names.set("<letters>", consoleLetters());
    for (const auto& [name, path] : {std::pair("<wsl>", machine.wsl), std::pair("<docker>", machine.docker)}) {
        if (!path.empty()) {
            names.set(name, path);
        }
    }
}

void checkAll(const std::vector<Fact>& facts, const Options& options, const Machine& machine, OwnThings& own,
              const Names& names, Run& run)
{
    Steps steps(own, names);
    for (const Fact& fact : facts) {
        const bool wanted =
            options.only.empty() || std::find(options.only.begin(), options.only.end(), fact.id) != options.only.end();
        if (!wanted) {
            continue;
        }
        std::cerr << "\r" << fact.id << " " << std::flush;
        const std::optional<Obstacle> obstacle = obstacleTo(fact, options, machine, own);
        run.results.push_back(obstacle ? Result{&fact, obstacle->verdict, obstacle->why, {}, {}, {}}
                                       : check(fact, steps, names, run.underWine));
    }
    std::cerr << "\r      \r" << std::flush;
}

// In the first of these folders that can be written to.
fs::path writeReport(const Options& options, const std::string& archive, const std::string& name)
{
    std::vector<fs::path> folders = {programFolder().parent_path().parent_path(),
                                     foundation::core::path::temp_directory_name()};
    if (!options.reportFolder.empty()) {
        folders = {pathOf(options.reportFolder)};
    }
    for (const fs::path& folder : folders) {
        std::ofstream file(folder / name, std::ios::binary);
        if (file.write(archive.data(), static_cast<std::streamsize>(archive.size())).flush()) {
            return folder / name;
        }
    }
    throw fs::filesystem_error("cannot write the report", folders.back(),
                               std::make_error_code(std::errc::permission_denied));
}

int verifyAll(const Options& options)
{
    const fs::path table = programFolder().parent_path().parent_path() / "facts.json";
    const std::vector<Fact> facts = readFacts(table);
    forgetVariables();
    Run run;
    run.begun = now("%Y-%m-%dT%H:%M:%SZ");
    run.facts = std::to_string(kelpctl::crc32(contentOf(table)));
    run.options = options.written();
    run.underWine = runsOnWine();
    const Machine machine = examineMachine();
    run.removed = OwnThings::removeLeftovers(machine);
    run.system = describeSystem();
    run.programs = describePrograms(machine);
    Names names;
    hideNames(names);
    namePrograms(names, machine);
    std::string id;
    {
        OwnThings own(machine, names);
        id = names.get("<id>");
        checkAll(facts, options, machine, own, names, run);
        cleaningUp();
        own.remove();
    }
    std::cout << reportText(run, names) << std::flush;
    const std::string name = "kelp-verify-" + now("%Y%m%dT%H%M%SZ") + "-" + id + ".zip";
    std::cout << "\nThe report: " << utf8(writeReport(options, reportArchive(run, names), name)) << "\n"
              << "Nothing was sent anywhere. Look into it before you send it to somebody.\n";
    if (interrupted()) {
        return kitFailed;
    }
    return differs(run) ? somethingDiffers : 0;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        prepareConsole();
        const std::optional<Options> options = optionsOf({argv + 1, argv + argc});
        if (!options) {
            std::cout << usage;
            return kitFailed;
        }
        return verifyAll(*options);
    } catch (const std::exception& error) {
        std::cerr << "verify: " << error.what() << "\n";
        return kitFailed;
    }
}
