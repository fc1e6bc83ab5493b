#include "model.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace faults {
namespace {

constexpr char commonChannel[] = "orb:lvm:common";
constexpr char wslChannel[] = "orb:lvm:wsl";
constexpr char dockerChannel[] = "orb:lvm:docker";

constexpr char fallbackWsl[] = "C:\\Windows\\System32\\wsl.exe";
constexpr char baseName[] = "kelp_hub";
constexpr char hostTree[] = "bin\\win64";

std::string addKVRelease(const std::string& name)
{
    return name + "_R2026b";
}

std::string hubTag()
{
    return baseName + addKVRelease(baseName);
}

std::string nameOr(const std::string& given, const std::string& usual)
{
    return given.empty() ? usual : given;
}

// White space as the C library knows it, at both ends.
std::string trimmed(const std::string& text)
{
    constexpr char space[] = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(space);
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(space) + 1 - first);
}

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> all;
    for (std::string word; stream >> word;) {
        all.push_back(word);
    }
    return all;
}

std::vector<std::string> trimmedLines(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> all;
    for (std::string line; std::getline(stream, line);) {
        all.push_back(trimmed(line));
    }
    std::erase(all, "");
    return all;
}

std::string bracketed(const std::vector<std::string>& list)
{
    std::string text;
    for (const std::string& element : list) {
        text += (text.empty() ? "" : " ") + ("[" + element + "]");
    }
    return text;
}

bool holds(const std::vector<std::string>& list, const std::string& element)
{
    return std::find(list.begin(), list.end(), element) != list.end();
}

std::string digit(bool flag)
{
    return flag ? "1" : "0";
}

// Enough for what the simulation prints.
bool isUtf8(const std::string& text)
{
    return text.find_first_of("\x80\xff\xc3") == std::string::npos;
}

} // namespace

std::string relativeProgram(const Places& places, const std::string& command)
{
    const bool inside = command.starts_with(places.programs);
    return inside ? std::filesystem::path(command.substr(places.programs.size())).generic_string() : command;
}

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
        const std::string result = operation(scenario_.operation);
        outcome_.result = result;
    } catch (const Thrown& thrown) {
        outcome_.result = thrown.result;
        outcome_.arguments = thrown.arguments;
    }
    return outcome_;
}

void Model::detail(const char* channel, const std::string& text)
{
    outcome_.log.push_back({channel, 8, text});
}

void Model::error(const char* channel, const std::string& text)
{
    outcome_.log.push_back({channel, 512, text});
}

bool Model::isSpoilt(const std::string& program, Fault how) const
{
    return plan_.fault == how && plan_.program == program && calls_ + 1 >= plan_.call;
}

Entry Model::whatIsAt(const std::string& path) const
{
    std::vector<std::string> all = state_.candidates;
    all.insert(all.end(), {"wsl.exe", "docker.exe"});
    for (const std::string& each : all) {
        if (path == nativePath(places_.programs, each)) {
            return isSpoilt(each, Fault::missing) ? Entry::nothing : entryOf(each);
        }
    }
    return Entry::nothing;
}

// A program that is not there is a run that failed; one that is there and cannot be started is an exception.
Answer Model::run(const std::vector<std::string>& command)
{
    const std::string& program = command.front();
    if (program.find('\0') != std::string::npos) {
        throw Thrown{"std::invalid_argument", {}};
    }
    const std::string name = relativeProgram(places_, program);
    const bool onPath = program == (scenario_.which ? "which" : "where") && !isSpoilt(program, Fault::missing);
    const Entry entry = onPath ? Entry::program : whatIsAt(program);
    if (entry == Entry::nothing) {
        return {127, {}, "cannot start '" + program + "': No such file or directory\n"};
    }
    if (entry == Entry::folder || isSpoilt(name, Fault::unstartable)) {
        throw Thrown{"std::system_error", {}};
    }
    ++calls_;
    outcome_.calls.push_back(command);
    const Fault fault = calls_ == plan_.call ? plan_.fault : Fault::none;
    return answerWith(fault, state_, places_.programs, name, {command.begin() + 1, command.end()});
}

// Narrow text as a path.
std::string Model::toPath(const std::string& text) const
{
    if (!isUtf8(text) && !consolesHaveCodePages) {
        throw Thrown{"std::system_error", {}};
    }
    return text;
}

bool Model::archiveExists(const std::string& path) const
{
    if (path == places_.givenArchive) {
        return true;
    }
    switch (scenario_.archives) {
    case Archives::packed:
        return path.ends_with(".tar.gz");
    case Archives::plain:
        return path.ends_with(".tar");
    default:
        return false;
    }
}

// The second is taken untested when the first does not exist.
std::string Model::defaultArchive(const std::string& packed, const std::string& plain) const
{
    return places_.archives + (archiveExists(places_.archives + packed) ? packed : plain);
}

// Asked once in the life of a process.
std::string Model::chosenWsl()
{
    if (keptWsl_) {
        return *keptWsl_;
    }
    Answer lookUp = run({"where", "wsl.exe"});
    if (lookUp.status != 0) {
        detail(wslChannel, "check_possible_executables: \"where\" command was not found");
        lookUp = run({"which", "wsl.exe"});
    }
    std::vector<std::string> candidates;
    if (lookUp.status == 0) {
        const std::string output = trimmed(lookUp.output);
        detail(wslChannel, "check_possible_executables: wsl_path_candidate = " + output);
        candidates = trimmedLines(output);
    }
    for (const std::string& candidate : candidates) {
        try {
            if (run({candidate, "-v"}).status == 0) {
                keptWsl_ = candidate;
                return candidate;
            }
        } catch (const Thrown&) {
            // One that cannot be run is passed over without a word.
        }
    }
    keptWsl_ = fallbackWsl;
    detail(wslChannel, std::string("check_possible_executables: fallback to ") + fallbackWsl);
    return *keptWsl_;
}

std::string Model::getExecutablePath()
{
    const std::string path = chosenWsl();
    detail(wslChannel, "getExecutablePath: wsl_path " + path);
    return path;
}

std::string Model::getDockerExecutablePath()
{
    const Answer lookUp = run({"where", "docker.exe"});
    if (lookUp.status != 0) {
        return {};
    }
    const std::string output = trimmed(lookUp.output);
    for (const std::string& line : trimmedLines(output)) {
        if (line.find(hostTree) == std::string::npos && whatIsAt(toPath(line)) == Entry::program) {
            return line;
        }
    }
    return output;
}

std::string Model::executablePath()
{
    return usesWsl() ? getExecutablePath() : getDockerExecutablePath();
}

std::vector<std::string> Model::getDistros(bool onlyRunning)
{
    const std::string wslPath = getExecutablePath();
    detail(wslChannel, "getDistros: wslPath = " + wslPath);
    std::vector<std::string> command = {wslPath, "--list", "-q"};
    if (onlyRunning) {
        detail(wslChannel, "getDistros: wslPath onlyRunning = true");
        command.emplace_back("--running");
    }
    if (scenario_.extraLogging) {
        detail(wslChannel, "getDistros: args = " + bracketed(command));
    }
    Answer answer = run(command);
    detail(wslChannel, "getDistros: status = " + std::to_string(answer.status));
    if (answer.status != 0) {
        error(wslChannel, "getDistros: status = " + std::to_string(answer.status) + "; " + answer.error);
        return {};
    }
    if (answer.output.empty()) {
        detail(wslChannel, "getDistros: no distros");
        return {};
    }
    std::erase(answer.output, '\0');
    const std::vector<std::string> distros = words(answer.output);
    if (scenario_.extraLogging) {
        detail(wslChannel, "getDistros: distros = " + bracketed(distros));
    }
    return distros;
}

void Model::wakeDistribution()
{
    detail(wslChannel, "importFromTarIfNecessary: wslIPAddress is empty and distro is not running");
    // Always the default one, whichever was asked for.
    std::vector<std::string> command = getContainerArgumentsPrefix("");
    command.emplace_back("~");
    run(command);
    // Then the address is asked for three times, in vain on this machine.
}

void Model::wslImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName)
{
    const std::string wslPath = getExecutablePath();
    detail(wslChannel, "importFromTarIfNecessary: wslPath = " + wslPath);
    const std::string distro = nameOr(imageName, addKVRelease(baseName));
    detail(wslChannel, "importFromTarIfNecessary: localDistroName = " + distro);
    const bool exists = holds(getDistros(false), distro);
    detail(wslChannel, "importFromTarIfNecessary: kelp distro exists " + digit(exists));
    if (exists) {
        const bool running = holds(getDistros(true), distro);
        detail(wslChannel, "importFromTarIfNecessary: (1) wslIPAddress =  " + scenario_.address);
        if (scenario_.address.empty() && !running) {
            wakeDistribution();
        }
        return;
    }

    detail(wslChannel, "importFromTarIfNecessary: attempt to import distro");
    std::string archive = tarPath;
    if (tarPath.empty()) {
        archive = defaultArchive("kelp_hub_distro.tar.gz", "kelp_hub_distro.tar");
        detail(wslChannel, "importFromTarIfNecessary: localTarFilePath = " + archive);
        detail(wslChannel, "importFromTarIfNecessary: useGZ = " + digit(archive.ends_with(".gz")));
    }
    // Its name is new each time; here it stands for what was chosen.
    const std::string folder = "{new folder}";
    const std::string folderIs = "importFromTarIfNecessary: localDistroLocationPath = " + folder;
    detail(wslChannel, folderIs);
    detail(wslChannel,
           "importFromTarIfNecessary: localDistroLocationPath exist " + folder + " distroLocationExist = 0");
    detail(wslChannel, folderIs + " doesn't exist, will attempt to create");
    detail(wslChannel, "importFromTarIfNecessary: localDistroLocationPath wasCreated = 1");
    const Answer answer = run({wslPath, "--import", distro, folder, archive, "--version", "2"});
    if (answer.status == 0) {
        return;
    }
    const std::string unsuccessful = "importFromTarIfNecessary: distro's import unsuccessful ";
    detail(wslChannel, unsuccessful + "status = " + std::to_string(answer.status));
    error(wslChannel, unsuccessful + "cout = " + answer.output);
    error(wslChannel, unsuccessful + "cerr = " + answer.error);
    throw Thrown{"WSL_CANNOT_IMPORT_TAR_FILE",
                 {archive, "cout = \n" + answer.output + "\ncerr = \n" + answer.error + "\n"}};
}

std::vector<std::string> Model::getImageRepositories()
{
    const Answer answer = run({getDockerExecutablePath(), "images", "--format", "{{.Repository}}"});
    if (answer.status != 0) {
        return {};
    }
    std::vector<std::string> repositories = words(answer.output);
    for (std::string& repository : repositories) {
        repository = repository.substr(repository.find_last_of('/') + 1);
    }
    return repositories;
}

// Whether the image counts as pulled.
bool Model::pullImageFromRegistry()
{
    if (!scenario_.registry) {
        return false;
    }
    const std::string reference = "zqkelp/" + hubTag() + ":" + hubTag();
    const std::string docker = getDockerExecutablePath();
    Answer answer = run({docker, "pull", "-q", reference});
    if (answer.status == 0) {
        answer = run({docker, "tag", reference, addKVRelease(baseName)});
    }
    if (answer.status == 0 || answer.error.empty()) {
        return true;
    }
    outcome_.printed += "ERROR in pullImageFromRegistry: " + answer.error + "\n";
    return false;
}

void Model::dockerImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool rootFs)
{
    detail(dockerChannel, "importFromTarIfNecessary: docker");
    const std::string docker = getDockerExecutablePath();
    detail(dockerChannel, "importFromTarIfNecessary: dockerPath = " + docker);
    if (whatIsAt(toPath(docker)) == Entry::nothing) {
        error(dockerChannel, "importFromTarIfNecessary: dockerPath doesn't exist");
        throw Thrown{"DOCKER_NOT_AVAILABLE", {}};
    }
    const std::string name = nameOr(imageName, addKVRelease(baseName));
    if (holds(getImageRepositories(), name)) {
        return;
    }
    const std::string packed = rootFs ? "kelp_hub_distro.tar.gz" : "kelp_hub_docker.tar.gz";
    const std::string archive = nameOr(tarPath, defaultArchive(packed, "kelp_hub_docker.tar"));
    if (!archiveExists(archive)) {
        throw Thrown{"TAR_FILE_NOT_AVAILABLE", {archive}};
    }
    if (!pullImageFromRegistry()) {
        const Answer answer = run(rootFs ? std::vector<std::string>{docker, "import", archive, imageName}
                                         : std::vector<std::string>{docker, "load", "-i", archive});
        if (answer.status != 0 && !answer.error.empty()) {
            throw Thrown{"TAR_FILE_LOAD_ERROR", {archive, name, answer.error}};
        }
    }
    if (!holds(getImageRepositories(), name)) {
        throw Thrown{"IMAGE_NOT_EXIST", {name}};
    }
}

bool Model::runHubContainer(const std::string& imageName, const std::string& containerName)
{
    std::vector<std::string> command = {getDockerExecutablePath(), "run", "-di", "--network=host"};
    command.push_back("--name=" + nameOr(containerName, baseName));
    for (const std::string& word : words(scenario_.auxiliary)) {
        command.push_back(word);
    }
    command.push_back(nameOr(imageName, addKVRelease(baseName)));
    return run(command).status == 0;
}

bool Model::removeHubContainer(const std::string& containerName)
{
    return run({getDockerExecutablePath(), "container", "rm", "-f", nameOr(containerName, baseName)}).status == 0;
}

void Model::importFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool rootFs)
{
    if (usesWsl()) {
        detail(wslChannel, "importFromTarIfNecessary: WSL");
        wslImportFromTarIfNecessary(tarPath, imageName);
    } else {
        dockerImportFromTarIfNecessary(tarPath, imageName, rootFs);
    }
}

void Model::clearDistroImage(const std::string& imageName)
{
    detail(commonChannel, "clearDistroImage: COMMON");
    const std::string name = nameOr(imageName, addKVRelease(baseName));
    detail(commonChannel, "clearDistroImage: imageName = " + name);
    const std::string path = executablePath();
    detail(commonChannel, "clearDistroImage: commandPath = " + path);
    const Answer answer = run(usesWsl() ? std::vector<std::string>{path, "--unregister", name}
                                        : std::vector<std::string>{path, "image", "rm", "--force", name});
    detail(commonChannel, "clearDistroImage: status = " + std::to_string(answer.status));
    if (answer.status != 0) {
        error(commonChannel, "clearDistroImage: distro's clear unsuccessful cout = " + answer.output);
        error(commonChannel, "clearDistroImage: distro's clear unsuccessful cerr = " + answer.error);
    }
}

std::string Model::startContainerIfNecessary(const std::string& containerName, const std::string& imageName)
{
    return usesWsl() || runHubContainer(imageName, containerName) ? "true" : "false";
}

std::string Model::stopContainerIfNecessary(const std::string& containerName)
{
    return usesWsl() || removeHubContainer(containerName) ? "true" : "false";
}

std::string Model::getContainerCommandPrefix(const std::string& name)
{
    const std::string path = executablePath();
    const std::string shown = path.find(' ') == std::string::npos ? path : "\"" + path + "\"";
    return usesWsl() ? shown + " -d " + addKVRelease(baseName) + " --exec " : shown + " exec " + nameOr(name, baseName);
}

std::vector<std::string> Model::getContainerArgumentsPrefix(const std::string& name)
{
    const std::string path = executablePath();
    return usesWsl() ? std::vector<std::string>{path, "-d", addKVRelease(baseName), "--exec"}
                     : std::vector<std::string>{path, "exec", nameOr(name, baseName)};
}

// WSL, whichever backend is selected; what is printed does not count.
std::string Model::wslCheck()
{
    return run({getExecutablePath(), "-l", "-q"}).status == 0 ? "0" : "-3";
}

std::string Model::operation(const std::string& name)
{
    const std::string nothing;
    if (name == "import" || name == "setup") {
        importFromTarIfNecessary(nothing, nothing, false);
    } else if (name == "setup-given") {
        importFromTarIfNecessary(places_.givenArchive, nothing, false);
    } else if (name == "import-named") {
        importFromTarIfNecessary(places_.givenArchive, otherName, false);
    } else if (name == "import-rootfs") {
        importFromTarIfNecessary(nothing, addKVRelease(baseName), true);
    } else if (name == "import-unnamed") {
        importFromTarIfNecessary(nothing, nothing, true);
    } else if (name == "clear" || name == "teardown") {
        clearDistroImage(nothing);
    } else if (name == "clear-named") {
        clearDistroImage(otherName);
    } else if (name == "check") {
        return wslCheck();
    } else if (name == "start") {
        return startContainerIfNecessary(nothing, nothing);
    } else if (name == "start-named") {
        return startContainerIfNecessary(otherContainer, otherName);
    } else if (name == "stop") {
        return stopContainerIfNecessary(nothing);
    } else if (name == "stop-named") {
        return stopContainerIfNecessary(otherContainer);
    } else if (name == "command-prefix") {
        return getContainerCommandPrefix(nothing);
    } else if (name == "arguments-prefix") {
        std::string joined;
        for (const std::string& element : getContainerArgumentsPrefix(nothing)) {
            joined += element + "|";
        }
        return joined;
    } else if (name == "executable") {
        return executablePath();
    }
    return "returns";
}

} // namespace faults
