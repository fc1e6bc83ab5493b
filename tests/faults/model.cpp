#include "model.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace faults {
namespace {

constexpr char hub[] = "kelp_hub_R2026b";
constexpr char usualWsl[] = "C:\\Windows\\System32\\wsl.exe";
constexpr char common[] = "orb:lvm:common";
constexpr char wsl[] = "orb:lvm:wsl";
constexpr char docker[] = "orb:lvm:docker";

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string trimmed(std::string text)
{
    constexpr char blanks[] = " \t\n\v\f\r";
    text.erase(text.find_last_not_of(blanks) + 1);
    text.erase(0, text.find_first_not_of(blanks));
    return text;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (line = trimmed(line); !line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

// In a command line, as a path with blanks must be.
std::string quoted(const std::string& path)
{
    return path.find(' ') == std::string::npos ? path : '"' + path + '"';
}

// Good enough for what the simulation prints: its garbage begins with bytes that no UTF-8 text has.
bool isText(const std::string& text)
{
    return text.find('\xff') == std::string::npos && text.find('\x80') == std::string::npos;
}

bool has(const std::vector<std::string>& list, const std::string& name)
{
    return std::count(list.begin(), list.end(), name) > 0;
}

std::string inBrackets(const std::vector<std::string>& list)
{
    std::string text;
    for (const std::string& element : list) {
        text += (text.empty() ? "[" : " [") + element + "]";
    }
    return text;
}

std::string fileName(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

// The simulated programs are known without the suffix that Windows gives them.
bool isLookup(const std::string& program)
{
    return program == "where" || program == "which";
}

} // namespace

Model::Model(const Scenario& scenario, Places places, State state)
    : scenario_(scenario), places_(std::move(places)), state_(std::move(state))
{
}

Outcome Model::perform(const Plan& plan)
{
    plan_ = plan;
    calls_ = 0;
    outcome_ = {};
    try {
        operation(scenario_.operation);
    } catch (const Thrown& thrown) {
        outcome_.result = thrown.result;
        outcome_.arguments = thrown.arguments;
    }
    return outcome_;
}

void Model::logLine(const std::string& channel, std::uint32_t severity, const std::string& text)
{
    outcome_.log.push_back({channel, severity, text});
}

bool Model::isBroken(const std::string& program, Fault how) const
{
    return plan_.fault == how && program == plan_.program && calls_ + 1 >= plan_.call;
}

bool Model::isProgramFile(const std::string& path) const
{
    const std::string name = fileName(path);
    return path == places_.programs + name && !isBroken(name, Fault::missing) &&
           (name == "wsl.exe" || name == "docker.exe");
}

// The process service, as its header promises it.
Answer Model::run(const std::vector<std::string>& command)
{
    const std::string& program = command.front();
    if (program.find('\0') != std::string::npos) {
        throw Thrown{"std::invalid_argument", {}};
    }
    const std::string name = fileName(program);
    const bool isThere =
        isLookup(name) ? program == name && (name == "where") != scenario_.which && !isBroken(name, Fault::missing)
                       : isProgramFile(program);
    if (!isThere) {
        return {127, {}, "cannot start '" + program + "': No such file or directory\n"};
    }
    if (isBroken(name, Fault::unstartable)) {
        throw Thrown{"std::system_error", {}};
    }
    ++calls_;
    outcome_.calls.push_back(command);
    const Fault fault = calls_ == plan_.call ? plan_.fault : Fault::none;
    const Arguments arguments(command.begin() + 1, command.end());
    return answerWith(fault, state_, places_.programs, name, arguments);
}

std::string Model::findWsl()
{
    Answer lookup = run({"where", "wsl.exe"});
    if (lookup.status != 0) {
        detail(wsl, "check_possible_executables: \"where\" command was not found");
        lookup = run({"which", "wsl.exe"});
    }
    std::vector<std::string> candidates;
    if (lookup.status == 0) {
        detail(wsl, "check_possible_executables: wsl_path_candidate = " + trimmed(lookup.output));
        candidates = linesOf(lookup.output);
    }
    for (const std::string& candidate : candidates) {
        try {
            if (run({candidate, "-v"}).status == 0) {
                return candidate;
            }
        } catch (const Thrown&) {
            continue;
        }
    }
    detail(wsl, std::string("check_possible_executables: fallback to ") + usualWsl);
    return usualWsl;
}

std::string Model::wslPath()
{
    if (!keptWslPath_) {
        keptWslPath_ = findWsl();
    }
    detail(wsl, "getExecutablePath: wsl_path " + *keptWslPath_);
    return *keptWslPath_;
}

std::vector<std::string> Model::distributions(bool running)
{
    const std::string path = wslPath();
    detail(wsl, "getDistros: wslPath = " + path);
    std::vector<std::string> command{path, "--list", "-q"};
    if (running) {
        detail(wsl, "getDistros: wslPath onlyRunning = true");
        command.emplace_back("--running");
    }
    if (scenario_.extraLogging) {
        detail(wsl, "getDistros: args = " + inBrackets(command));
    }
    Answer listing = run(command);
    detail(wsl, "getDistros: status = " + std::to_string(listing.status));
    if (listing.status != 0) {
        error(wsl, "getDistros: status = " + std::to_string(listing.status) + "; " + listing.error);
        return {};
    }
    if (listing.output.empty()) {
        detail(wsl, "getDistros: no distros");
        return {};
    }
    std::erase(listing.output, '\0');
    const std::vector<std::string> names = wordsOf(listing.output);
    if (scenario_.extraLogging) {
        detail(wsl, "getDistros: distros = " + inBrackets(names));
    }
    return names;
}

void Model::startDistribution()
{
    const bool running = has(distributions(true), hub);
    // No machine that runs these tests has an adapter of WSL.
    detail(wsl, "importFromTarIfNecessary: (1) wslIPAddress =  ");
    if (running) {
        return;
    }
    detail(wsl, "importFromTarIfNecessary: wslIPAddress is empty and distro is not running");
    run({wslPath(), "-d", hub, "--exec", "~"});
}

void Model::wslImport()
{
    detail(wsl, "importFromTarIfNecessary: WSL");
    const std::string path = wslPath();
    detail(wsl, "importFromTarIfNecessary: wslPath = " + path);
    detail(wsl, std::string("importFromTarIfNecessary: localDistroName = ") + hub);
    const bool exists = has(distributions(false), hub);
    detail(wsl, std::string("importFromTarIfNecessary: kelp distro exists ") + (exists ? "1" : "0"));
    if (exists) {
        startDistribution();
        return;
    }
    detail(wsl, "importFromTarIfNecessary: attempt to import distro");
    const std::string archive =
        places_.archives + (scenario_.uncompressed ? "kelp_hub_distro.tar" : "kelp_hub_distro.tar.gz");
    detail(wsl, "importFromTarIfNecessary: localTarFilePath = " + archive);
    detail(wsl, std::string("importFromTarIfNecessary: useGZ = ") + (scenario_.uncompressed ? "0" : "1"));
    const std::string location = "importFromTarIfNecessary: localDistroLocationPath";
    const std::string folder = "{new folder}";
    detail(wsl, location + " = " + folder);
    detail(wsl, location + " exist " + folder + " distroLocationExist = 0");
    detail(wsl, location + " = " + folder + " doesn't exist, will attempt to create");
    detail(wsl, location + " wasCreated = 1");
    const Answer import = run({path, "--import", hub, folder, archive, "--version", "2"});
    if (import.status == 0) {
        return;
    }
    const std::string failed = "importFromTarIfNecessary: distro's import unsuccessful ";
    detail(wsl, failed + "status = " + std::to_string(import.status));
    error(wsl, failed + "cout = " + import.output);
    error(wsl, failed + "cerr = " + import.error);
    throw Thrown{"WSL_CANNOT_IMPORT_TAR_FILE",
                 {archive, "cout = \n" + import.output + "\ncerr = \n" + import.error + "\n"}};
}

std::string Model::dockerPath()
{
    const Answer lookup = run({"where", "docker.exe"});
    if (lookup.status != 0) {
        return {};
    }
    for (const std::string& line : linesOf(lookup.output)) {
        if (!isText(line) && !consolesHaveCodePages) {
            throw Thrown{"std::system_error", {}};
        }
        if (isProgramFile(line)) {
            return line;
        }
    }
    return trimmed(lookup.output);
}

std::vector<std::string> Model::images()
{
    const Answer listing = run({dockerPath(), "images", "--format", "{{.Repository}}"});
    std::vector<std::string> names;
    if (listing.status == 0) {
        names = wordsOf(listing.output);
    }
    for (std::string& name : names) {
        name = name.substr(name.rfind('/') + 1);
    }
    return names;
}

bool Model::pull()
{
    if (!scenario_.registry) {
        return false;
    }
    const std::string reference = std::string("zqkelp/kelp_hub") + hub + ":kelp_hub" + hub;
    const std::string path = dockerPath();
    std::string failure;
    const Answer pulled = run({path, "pull", "-q", reference});
    if (pulled.status != 0) {
        failure = pulled.error;
    } else {
        const Answer tagged = run({path, "tag", reference, hub});
        failure = tagged.status != 0 ? tagged.error : std::string();
    }
    if (failure.empty()) {
        return true;
    }
    outcome_.printed += "ERROR in pullImageFromRegistry: " + failure + "\n";
    return false;
}

void Model::dockerImport(bool rootFs)
{
    detail(docker, "importFromTarIfNecessary: docker");
    const std::string path = dockerPath();
    detail(docker, "importFromTarIfNecessary: dockerPath = " + path);
    if (!isProgramFile(path)) {
        error(docker, "importFromTarIfNecessary: dockerPath doesn't exist");
        throw Thrown{"DOCKER_NOT_AVAILABLE", {}};
    }
    if (has(images(), hub)) {
        return;
    }
    const std::string archive = places_.archives + (scenario_.uncompressed ? "kelp_hub_docker.tar"
                                                    : rootFs               ? "kelp_hub_distro.tar.gz"
                                                                           : "kelp_hub_docker.tar.gz");
    if (!pull()) {
        const Answer load = rootFs ? run({path, "import", archive, hub}) : run({path, "load", "-i", archive});
        if (load.status != 0 && !load.error.empty()) {
            throw Thrown{"TAR_FILE_LOAD_ERROR", {archive, hub, load.error}};
        }
    }
    if (!has(images(), hub)) {
        throw Thrown{"IMAGE_NOT_EXIST", {hub}};
    }
}

void Model::clear()
{
    const bool isWsl = scenario_.backend == Backend::wsl;
    detail(common, "clearDistroImage: COMMON");
    detail(common, std::string("clearDistroImage: imageName = ") + hub);
    const std::string path = isWsl ? wslPath() : dockerPath();
    detail(common, "clearDistroImage: commandPath = " + path);
    const Answer removal = isWsl ? run({path, "--unregister", hub}) : run({path, "image", "rm", "--force", hub});
    detail(common, "clearDistroImage: status = " + std::to_string(removal.status));
    if (removal.status != 0) {
        error(common, "clearDistroImage: distro's clear unsuccessful cout = " + removal.output);
        error(common, "clearDistroImage: distro's clear unsuccessful cerr = " + removal.error);
    }
}

void Model::operation(const std::string& name)
{
    const bool isWsl = scenario_.backend == Backend::wsl;
    const auto truth = [](bool value) { return value ? "true" : "false"; };
    outcome_.result = "returns";
    if (name == "import" || name == "import-rootfs" || name == "setup") {
        isWsl ? wslImport() : dockerImport(name == "import-rootfs");
    } else if (name == "clear" || name == "teardown") {
        clear();
    } else if (name == "check") {
        outcome_.result = run({wslPath(), "-l", "-q"}).status == 0 ? "0" : "-3";
    } else if (name == "start") {
        outcome_.result =
            truth(isWsl || run({dockerPath(), "run", "-di", "--network=host", "--name=kelp_hub", hub}).status == 0);
    } else if (name == "stop") {
        outcome_.result = truth(isWsl || run({dockerPath(), "container", "rm", "-f", "kelp_hub"}).status == 0);
    } else if (name == "command-prefix") {
        outcome_.result =
            isWsl ? quoted(wslPath()) + " -d " + hub + " --exec " : quoted(dockerPath()) + " exec kelp_hub";
    } else if (name == "arguments-prefix") {
        outcome_.result = isWsl ? wslPath() + "|-d|" + hub + "|--exec|" : dockerPath() + "|exec|kelp_hub|";
    } else if (name == "executable") {
        outcome_.result = isWsl ? wslPath() : dockerPath();
    } else {
        throw std::logic_error("no such operation: " + name);
    }
}

const std::vector<Scenario>& scenarios()
{
    const State nothing;
    const State stopped{{hub}, {}, {}, {}};
    const State running{{hub}, {hub}, {}, {}};
    const State image{{}, {}, {"ubuntu", hub}, {}};
    const State container{{}, {}, {hub}, {"kelp_hub"}};
    const Backend w = Backend::wsl;
    const Backend d = Backend::docker;
    static const std::vector<Scenario> all{
        {"wsl-import-missing", w, "import", nothing},
        {"wsl-import-stopped", w, "import", stopped},
        {"wsl-import-running", w, "import", running, false, true},
        {"wsl-import-by-which", w, "import", nothing, false, false, true, true},
        {"wsl-clear", w, "clear", stopped},
        {"wsl-command-prefix", w, "command-prefix", stopped},
        {"wsl-arguments-prefix", w, "arguments-prefix", stopped},
        {"wsl-executable", w, "executable", stopped},
        {"wsl-start", w, "start", stopped},
        {"wsl-stop", w, "stop", stopped},
        {"wsl-gateway-setup", w, "setup", nothing},
        {"wsl-gateway-teardown", w, "teardown", running},
        {"wsl-gateway-check", w, "check", stopped},
        {"docker-import-present", d, "import", image},
        {"docker-import-load", d, "import", nothing},
        {"docker-import-rootfs", d, "import-rootfs", nothing},
        {"docker-import-pull", d, "import", nothing, true},
        {"docker-clear", d, "clear", image},
        {"docker-start", d, "start", image},
        {"docker-stop", d, "stop", container},
        {"docker-command-prefix", d, "command-prefix", container},
        {"docker-arguments-prefix", d, "arguments-prefix", container},
        {"docker-executable", d, "executable", container},
        {"docker-gateway-setup", d, "setup", nothing, false, false, true},
        {"docker-gateway-teardown", d, "teardown", image},
        {"docker-gateway-check", d, "check", stopped},
    };
    return all;
}

const Scenario& scenarioNamed(const std::string& name)
{
    const auto& all = scenarios();
    const auto entry = std::find_if(all.begin(), all.end(), [&name](const Scenario& s) { return s.name == name; });
    if (entry == all.end()) {
        throw std::invalid_argument("no such scenario: " + name);
    }
    return *entry;
}

} // namespace faults
