#include "archive.h"
#include "modes.h"
#include "options.h"
#include "output.h"
#include "paths.h"
#include "registry.h"
#include "verbs.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <random>
#include <unistd.h>

namespace stand_in {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view registerContext = "Wsl/Service/RegisterDistro/";

struct Request {
    std::string name;
    // As the caller wrote it.
    std::string folderText;
    fs::path folder;
    fs::path archive;
    int version = 2;
};

// What an import made, to be taken away again when it fails.
struct Made {
    bool folder = false;
    bool registration = false;
    bool disk = false;
};

[[noreturn]] void failRegistration(std::string_view english, std::string_view code, std::string_view argument = {})
{
    fail(english, std::string(registerContext) + std::string(code), argument);
}

bool looksLikeDisk(std::string file)
{
    std::transform(file.begin(), file.end(), file.begin(), [](unsigned char c) { return std::tolower(c); });
    return file.ends_with(".vhd") || file.ends_with(".vhdx");
}

int parseVersion(const Options& options)
{
    if (!options.has("--version")) {
        return 2;
    }
    const std::string text = options.options.at("--version");
    if (text != "1" && text != "2") {
        fail("The parameter is incorrect. ", "Wsl/E_INVALIDARG");
    }
    return text == "1" ? 1 : 2;
}

Request parseRequest(std::string_view rest)
{
    const Options options = parseOptions(rest, {{"--version", 0, true}}, 3);
    if (options.positionals.size() < 3) {
        fail("The parameter is incorrect. ", "Wsl/E_INVALIDARG");
    }
    const int version = parseVersion(options);
    const std::string& file = options.positionals[2];
    if (looksLikeDisk(file)) {
        fail("This looks like a VHD file. Use --vhd to import a VHD instead of a tar.");
    }
    return {options.positionals[0], options.positionals[1], hostPath(options.positionals[1]),
            file == "-" ? fs::path("/dev/stdin") : hostPath(file), version};
}

// One level only. A folder that is there already is as good.
bool makeFolder(const fs::path& folder)
{
    if (!fs::is_directory(folder.parent_path())) {
        fail("The system cannot find the path specified. ", "Wsl/ERROR_PATH_NOT_FOUND");
    }
    std::error_code error;
    return fs::create_directory(folder, error);
}

void requireReadable(const fs::path& file)
{
    if (!fs::is_directory(file.parent_path())) {
        fail("The system cannot find the path specified. ", "Wsl/ERROR_PATH_NOT_FOUND");
    }
    if (!fs::exists(file)) {
        fail("The system cannot find the file specified. ", "Wsl/ERROR_FILE_NOT_FOUND");
    }
    if (fs::is_directory(file) || ::access(file.c_str(), R_OK) != 0) {
        fail("Access is denied. ", "Wsl/E_ACCESSDENIED");
    }
}

void requireValidName(const std::string& name)
{
    const bool lettersValid = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c < 0x80 && (std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-');
    });
    if (name.empty() || name.size() > 256 || !lettersValid || sameName(name, "Legacy")) {
        failRegistration("Invalid distribution name: \"{}\".", "E_INVALIDARG", name);
    }
}

void requireFree(Registry& registry, const Request& request)
{
    if (const Distribution* other = registry.find(request.name)) {
        if (isInstalled(*other)) {
            failRegistration(
                "A distribution with the supplied name already exists. Use --name to choose a different name.",
                "ERROR_ALREADY_EXISTS");
        }
        failRegistration("An install, uninstall, or conversion is in progress for this distribution.",
                         "E_ILLEGAL_STATE_CHANGE");
    }
    for (const Distribution& other : registry.distributions) {
        if (other.basePath == fs::weakly_canonical(request.folder)) {
            failRegistration("The supplied install location is already in use.", "ERROR_FILE_EXISTS");
        }
    }
}

std::string randomId()
{
    static constexpr std::string_view digits = "0123456789abcdef";
    std::random_device random;
    std::string id;
    for (int i = 0; i < 8; ++i) {
        id += digits[random() % digits.size()];
    }
    return id;
}

// Reserves the name: it is taken, yet hidden from lists until the import is done.
Distribution reserve(const Request& request)
{
    requireValidName(request.name);
    Registry registry;
    requireFree(registry, request);
    Distribution distribution;
    distribution.name = request.name;
    distribution.state = "Installing";
    distribution.id = randomId();
    distribution.version = request.version;
    distribution.basePath = fs::weakly_canonical(request.folder);
    distribution.worker = thisProcess();
    const auto place = std::find_if(registry.distributions.begin(), registry.distributions.end(),
                                    [&](const Distribution& each) { return each.id > distribution.id; });
    registry.distributions.insert(place, distribution);
    registry.save();
    return distribution;
}

void requireVirtualisation()
{
    if (modeIsOn("virtualisation-off")) {
        throw Failure{
            message("WSL2 is unable to start since virtualization is not enabled on this machine.") +
                "\nPlease enable the \"Virtual Machine Platform\" optional component and ensure virtualization"
                " is enabled in the BIOS."
                "\nEnable \"Virtual Machine Platform\" by running: wsl.exe --install --no-distribution"
                "\nFor information please visit https://aka.ms/enablevirtualization",
            std::string(registerContext) + "CreateVm/HCS/HCS_E_HYPERV_NOT_INSTALLED"};
    }
}

void createDisk(const Distribution& distribution, const std::string& folderText)
{
    const int file = ::open(disk(distribution).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0 && errno == EEXIST) {
        failRegistration("Failed to create disk '{}': The file exists. ", "ERROR_FILE_EXISTS",
                         folderText + "\\ext4.vhdx");
    }
    if (file < 0) {
        failRegistration("The system cannot find the path specified. ", "ERROR_PATH_NOT_FOUND");
    }
    ::close(file);
}

// An archive that comes by a pipe cannot be looked at before it is unpacked; it is kept in a file in the meantime.
fs::path spooled(const fs::path& archive, const fs::path& scratch)
{
    if (archive != "/dev/stdin") {
        return archive;
    }
    std::ofstream(scratch, std::ios::binary) << std::cin.rdbuf();
    return scratch;
}

void fill(const Distribution& distribution, const fs::path& archive)
{
    const fs::path root = rootFileSystem(distribution);
    fs::create_directory(root);
    const fs::path scratch = root.string() + ".tar";
    const std::string complaint = unpack(spooled(archive, scratch), root);
    fs::remove(scratch);
    if (!complaint.empty()) {
        printRawError(complaint);
        failRegistration("Importing the distribution failed.", "WSL_E_IMPORT_FAILED");
    }
    if (!fs::exists(fs::symlink_status(root / "etc")) && !fs::exists(fs::symlink_status(root / "bin/sh"))) {
        failRegistration("The imported file is not a valid Linux distribution.", "WSL_E_NOT_A_LINUX_DISTRO");
    }
}

void markInstalled(const std::string& name)
{
    Registry registry;
    Distribution* distribution = registry.find(name);
    if (distribution == nullptr) {
        failRegistration("There is no distribution with the supplied name.", "WSL_E_DISTRO_NOT_FOUND");
    }
    distribution->state = "Installed";
    if (registry.defaultName.empty()) {
        registry.defaultName = name;
    }
    registry.save();
}

void takeBack(const Request& request, const Distribution& distribution, const Made& made)
{
    std::error_code ignored;
    if (made.disk) {
        fs::remove_all(rootFileSystem(distribution), ignored);
        fs::remove(disk(distribution), ignored);
    }
    if (made.registration) {
        Registry registry;
        registry.remove(request.name);
        registry.save();
    }
    if (made.folder) {
        fs::remove(request.folder, ignored);
    }
}

} // namespace

int importDistribution(std::string_view rest)
{
    const Request request = parseRequest(rest);
    Made made;
    Distribution distribution;
    try {
        made.folder = makeFolder(request.folder);
        requireReadable(request.archive);
        distribution = reserve(request);
        made.registration = true;
        requireVirtualisation();
        createDisk(distribution, request.folderText);
        made.disk = true;
        sleepMilliseconds(numberFromEnvironment("WSL_STAND_IN_IMPORT_MS", 0));
        fill(distribution, request.archive);
        markInstalled(request.name);
    } catch (...) {
        takeBack(request, distribution, made);
        throw;
    }
    printSuccess();
    return 0;
}

} // namespace stand_in
