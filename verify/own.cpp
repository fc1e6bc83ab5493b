#include "own.h"

#include "fact.h"
#include "programs.h"

#include "host/files.h"
#include "lvm/commands.h"
#include "lvm/text.h"

#include <algorithm>
#include <cctype>
#include <fstream>

namespace verify {

namespace commands = orb::lvm::detail::commands;
namespace fs = std::filesystem;

namespace {

// What the library calls a distribution of the release "verify_...".
constexpr char hub[] = "kelp_hub_";
constexpr char release[] = "verify_";
constexpr std::size_t idLength = 8;
constexpr int importSeconds = 300;
// Beside the folder, the default distribution of before.
constexpr char lockEnding[] = ".lock";
constexpr char defaultEnding[] = ".default";

fs::path temporaryFolder()
{
    return foundation::core::path::temp_directory_name();
}

std::string newId()
{
    const std::u16string random = foundation::core::path::tmpnam(u"", u"", u"");
    const std::u16string id = random.substr(random.size() - idLength);
    return {id.begin(), id.end()};
}

// A name of a run's own, whichever: those of Docker and of WSL are alike.
bool isOwnName(const std::string& name)
{
    const std::string begin = std::string(hub) + release;
    return name.size() == begin.size() + idLength + (name.ends_with("_b") ? 2 : 0) && name.starts_with(begin) &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(begin.size()),
                       name.begin() + static_cast<std::ptrdiff_t>(begin.size() + idLength),
                       [](unsigned char letter) { return std::isxdigit(letter) != 0; });
}

// The name of the run that a name belongs to.
std::string runOf(const std::string& name)
{
    return name.substr(0, std::string(hub).size() + std::string(release).size() + idLength);
}

bool isLeft(const std::string& name)
{
    return isOwnName(name) && !Lock::isHeld(temporaryFolder() / (runOf(name) + lockEnding));
}

void unregister(const std::string& wsl, const std::string& name)
{
    runProgram({commands::wslUnregister(wsl, name), {}, {}, {}, importSeconds});
}

// Whether a distribution of this run is there.
bool isRegistered(const std::string& wsl, const std::string& run)
{
    const std::vector<std::string> all = distributions(wsl);
    return std::any_of(all.begin(), all.end(),
                       [&run](const std::string& each) { return isOwnName(each) && runOf(each) == run; });
}

void removeImage(const std::string& docker, const std::string& name)
{
    runProgram({commands::dockerRemoveContainer(docker, name)});
    runProgram({commands::dockerRemoveImage(docker, name)});
}

void rememberDefault(const std::string& name, const std::string& run)
{
    std::ofstream(temporaryFolder() / (run + defaultEnding), std::ios::binary) << name;
}

// Puts back what the run has found, when that is still there.
void restoreDefault(const std::string& wsl, const std::string& run)
{
    const fs::path file = temporaryFolder() / (run + defaultEnding);
    std::error_code error;
    if (!fs::exists(file, error)) {
        return;
    }
    const std::string before = contentOf(file);
    const std::vector<std::string> all = distributions(wsl);
    if (!before.empty() && orb::lvm::detail::contains(all, before) && defaultDistribution(wsl) != before) {
        runProgram({{wsl, "--set-default", before}});
    }
    fs::remove(file, error);
}

} // namespace

OwnThings::OwnThings(const Machine& machine, Names& names) : machine_(machine), names_(names)
{
    const std::string id = newId();
    name_ = std::string(hub) + release + id;
    lock_.emplace(temporaryFolder() / (name_ + lockEnding));
    folder_ = temporaryFolder() / name_;
    fs::create_directories(folder_);
    std::string upper = name_;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    names.set("<id>", id);
    names.set("<release>", release + id);
    names.set("<NAME>", upper);
    names.set("<name>", name_);
    names.set("<other>", name_ + "_b");
    names.set("<work>", utf8(folder_));
    names.set("<disk>", utf8(folder_ / "disk"));
}

// What could not be unregistered has its files there; the next run tries again.
OwnThings::~OwnThings()
{
    if (!machine_.wslUsable || !isRegistered(machine_.wsl, name_)) {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
}

const Answer& OwnThings::distribution()
{
    if (!distribution_) {
        rememberDefault(defaultDistribution(machine_.wsl), name_);
        distribution_ =
            runProgram({commands::wslImport(machine_.wsl, name_, names_.get("<disk>"), names_.get("<rootfs>")),
                        {},
                        {},
                        {},
                        importSeconds});
    }
    return *distribution_;
}

const Answer& OwnThings::image()
{
    if (!image_) {
        image_ = runProgram(
            {commands::dockerImport(machine_.docker, names_.get("<rootfs>"), name_), {}, {}, {}, importSeconds});
    }
    return *image_;
}

void OwnThings::remove()
{
    if (machine_.wslUsable) {
        for (const std::string& name : distributions(machine_.wsl)) {
            if (isOwnName(name) && runOf(name) == name_) {
                unregister(machine_.wsl, name);
            }
        }
        restoreDefault(machine_.wsl, name_);
    }
    if (image_) {
        removeImage(machine_.docker, name_);
    }
}

std::vector<std::string> OwnThings::removeLeftovers(const Machine& machine)
{
    std::vector<std::string> removed;
    for (const std::string& name : machine.wslUsable ? distributions(machine.wsl) : std::vector<std::string>()) {
        if (isLeft(name)) {
            unregister(machine.wsl, name);
            restoreDefault(machine.wsl, runOf(name));
            removed.push_back("the distribution " + name);
        }
    }
    for (const std::string& name : machine.engine ? images(machine.docker) : std::vector<std::string>()) {
        if (isLeft(name)) {
            removeImage(machine.docker, name);
            removed.push_back("the image " + name);
        }
    }
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(temporaryFolder(), error)) {
        const std::string name = utf8(entry.path().filename());
        const std::string stem = utf8(entry.path().stem());
        if (entry.is_directory(error) && isLeft(name) && !(machine.wslUsable && isRegistered(machine.wsl, name))) {
            fs::remove_all(entry.path(), error);
            removed.push_back("the folder " + name);
        } else if (name.ends_with(defaultEnding) && isLeft(stem)) {
            if (machine.wslUsable) {
                restoreDefault(machine.wsl, stem);
            }
            fs::remove(entry.path(), error);
        }
    }
    return removed;
}

} // namespace verify
