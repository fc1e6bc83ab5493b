#include "archive.h"
#include "disk.h"
#include "modes.h"
#include "options.h"
#include "output.h"
#include "paths.h"
#include "registry.h"
#include "relays.h"
#include "special_modes.h"
#include "verbs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <optional>
#include <random>
#include <unistd.h>

namespace stand_in {
namespace {

namespace fs = std::filesystem;

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

// Builds of 2023 had other words and codes for some of them.
[[noreturn]] void failAs(const KnownFailure& today, const KnownFailure& once, std::string_view argument = {})
{
    fail(modeIsOn("old-codes") ? once : today, argument);
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
        fail(failures::badParameter);
    }
    return text == "1" ? 1 : 2;
}

Request parseRequest(std::string_view rest)
{
    const Options options = parseOptions(rest, {{"--version", 0, true}}, 3);
    if (options.positionals.size() < 3) {
        fail(failures::badParameter);
    }
    const int version = parseVersion(options);
    const std::string& file = options.positionals[2];
    if (looksLikeDisk(file)) {
        fail(failures::virtualDiskFile);
    }
    return {options.positionals[0], options.positionals[1], hostPath(options.positionals[1]),
            file == "-" ? fs::path("/dev/stdin") : hostPath(file), version};
}

// One level only. A folder that is there already is as good.
bool makeFolder(const fs::path& folder)
{
    if (!fs::is_directory(folder.parent_path())) {
        fail(failures::folderMissing);
    }
    std::error_code error;
    const bool made = fs::create_directory(folder, error);
    if (!fs::is_directory(folder)) {
        fail(failures::accessDenied);
    }
    return made;
}

void requireReadable(const fs::path& file)
{
    if (!fs::is_directory(file.parent_path())) {
        fail(failures::folderMissing);
    }
    if (!fs::exists(file)) {
        fail(failures::fileMissing);
    }
    if (fs::is_directory(file) || ::access(file.c_str(), R_OK) != 0) {
        fail(failures::accessDenied);
    }
}

void requireValidName(const std::string& name)
{
    const bool lettersValid = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c < 0x80 && (std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-');
    });
    if (name.empty() || name.size() > 256 || !lettersValid || sameName(name, "Legacy")) {
        failAs(failures::nameInvalid, failures::oldNameInvalid, name);
    }
}

void requireFree(Registry& registry, const Request& request)
{
    if (const Distribution* other = registry.find(request.name)) {
        if (isInstalled(*other)) {
            failAs(failures::nameTaken, failures::oldNameTaken);
        }
        failAs(failures::nameBusy, failures::oldNameBusy);
    }
    for (const Distribution& other : registry.distributions) {
        if (other.basePath == fs::weakly_canonical(request.folder)) {
            fail(failures::folderTaken);
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

void createDisk(const Distribution& distribution, const std::string& folderText)
{
    const int file = ::open(disk(distribution).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0 && errno == EEXIST) {
        fail(failures::diskExists, folderText + "\\ext4.vhdx");
    }
    if (file < 0) {
        fail(failures::diskFolderMissing);
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

void requireDone(const std::string& complaint)
{
    if (!complaint.empty()) {
        printRawError(complaint);
        fail(failures::importFailed);
    }
}

void fill(const Distribution& distribution, const fs::path& archive)
{
    const fs::path root = rootFileSystem(distribution);
    fs::create_directory(root);
    const fs::path scratch = root.string() + ".tar";
    const std::string complaint = unpack(spooled(archive, scratch), root);
    fs::remove(scratch);
    requireDone(complaint);
    if (!fs::exists(fs::symlink_status(root / "etc")) && !fs::exists(fs::symlink_status(root / "bin/sh"))) {
        fail(failures::notLinux);
    }
}

void markInstalled(const std::string& name)
{
    Registry registry;
    Distribution* distribution = registry.find(name);
    if (distribution == nullptr) {
        fail(failures::unknownDistribution);
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

int carryOut(const Request& request)
{
    Made made;
    Distribution distribution;
    try {
        made.folder = makeFolder(request.folder);
        requireReadable(request.archive);
        distribution = reserve(request);
        made.registration = true;
        requireVirtualMachine("RegisterDistro");
        waitForDisk();
        createDisk(distribution, request.folderText);
        made.disk = true;
        requireDone(growDisk(disk(distribution)));
        fill(distribution, request.archive);
        markInstalled(request.name);
    } catch (...) {
        takeBack(request, distribution, made);
        throw;
    }
    printSuccess();
    return 0;
}

// The service in a process and a session of its own, whose words this process passes on for as long as it lives.
int carryOutInService(const Request& request)
{
    Relays relays;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail(failures::catastrophe);
    }
    const pid_t service = ::fork();
    if (service == 0) {
        ::setsid();
        takeStreams(relays.inside());
        const Ending ending{reportingFailures([&request] { return carryOut(request); }), false};
        writeBytes(ends[1], {reinterpret_cast<const char*>(&ending), sizeof ending});
        ::_exit(0);
    }
    ::close(ends[1]);
    relays.closeInside();
    const std::optional<Ending> ending = relays.copyUntilEnd(ends[0]);
    waitForChild(service);
    return ending ? ending->status : ownFailure;
}

} // namespace

int importDistribution(std::string_view rest)
{
    const Request request = parseRequest(rest);
    return modeIsOn("import-goes-on") ? carryOutInService(request) : carryOut(request);
}

} // namespace stand_in
