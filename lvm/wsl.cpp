#include "wsl.h"

#include "commands.h"
#include "files.h"
#include "frame.h"
#include "rules.h"
#include "runner.h"
#include "text.h"

#include "host/files.h"
#include "host/install.h"
#include "host/text.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace orb::lvm::detail {
namespace {

using foundation::core::net::NetworkInterface;

constexpr char fallbackPath[] = R"(C:\Windows\System32\wsl.exe)";

template <class... Parts>
void logDetail(const Parts&... parts)
{
    log(wslLogger(), Level::Detail, parts...);
}

template <class... Parts>
void logError(const Parts&... parts)
{
    log(wslLogger(), Level::Error, parts...);
}

// A Unix-style shell's look-up prints "/c/Windows/..."; only a drive C at the very beginning is recognised.
std::string withWindowsDrive(std::string text)
{
    if (text.starts_with("/c/")) {
        text.replace(0, 3, "c:\\");
        std::replace(text.begin(), text.end(), '/', '\\');
    }
    return text;
}

std::vector<std::string> findCandidates()
{
    RunResult lookup = runCommand(commands::wslLookUp("where"));
    if (lookup.status != 0) {
        logDetail("check_possible_executables: \"where\" command was not found");
        lookup = runCommand(commands::wslLookUp("which"));
    }
    if (lookup.status != 0) {
        return {};
    }
    const std::string output = withWindowsDrive(std::move(lookup.standardOutput));
    logDetail("check_possible_executables: wsl_path_candidate = ", trim(output));
    return trimmedLines(output);
}

bool answersVersion(const std::string& candidate)
{
    try {
        return runCommand(commands::wslVersion(candidate)).status == 0;
    } catch (const std::exception&) {
        return false;
    }
}

std::optional<std::string> findExecutable()
{
    for (const std::string& candidate : findCandidates()) {
        if (answersVersion(candidate)) {
            return candidate;
        }
    }
    return std::nullopt;
}

// A path that is known once someone has found it. Several threads may look for it at once; what the first of them finds
// stays.
class KeptPath {
public:
    KeptPath() = default;
    ~KeptPath() { delete path_.load(std::memory_order_acquire); }
    KeptPath(const KeptPath&) = delete;
    KeptPath& operator=(const KeptPath&) = delete;

    // Null while nothing is kept. What it points to never changes.
    const std::string* get() const { return path_.load(std::memory_order_acquire); }

    void keep(std::string found)
    {
        auto mine = std::make_unique<const std::string>(std::move(found));
        const std::string* nothing = nullptr;
        if (path_.compare_exchange_strong(nothing, mine.get(), std::memory_order_acq_rel)) {
            static_cast<void>(mine.release()); // it is path_ that owns it now
        }
    }

private:
    std::atomic<const std::string*> path_{nullptr};
};

} // namespace

std::string check_possible_executables()
{
    // The search runs programs, so no lock is held meanwhile: nobody waits for another's programs, and whoever observes
    // the runs may call the library.
    static KeptPath kept;
    if (kept.get() == nullptr) {
        const std::optional<std::string> found = findExecutable();
        kept.keep(found.value_or(fallbackPath));
        if (!found) {
            logDetail("check_possible_executables: fallback to ", fallbackPath);
        }
    }
    return *kept.get();
}

std::string orFallback(std::string path)
{
    if (path.empty()) {
        path = fallbackPath;
        logDetail("getExecutablePath: check_possible_executables failed, fallback to ", path);
    }
    return path;
}

std::string getExecutablePath()
{
    std::string path = orFallback(check_possible_executables());
    logDetail("getExecutablePath: wsl_path ", path);
    return path;
}

std::vector<std::string> getDistros(bool onlyRunning)
{
    const std::string wslPath = getExecutablePath();
    logDetail("getDistros: wslPath = ", wslPath);
    if (onlyRunning) {
        logDetail("getDistros: wslPath onlyRunning = true");
    }
    const CommandLine arguments = onlyRunning ? commands::wslListRunning(wslPath) : commands::wslList(wslPath);
    if (additionalLoggingEnabled()) {
        logDetail("getDistros: args = ", Bracketed{arguments});
    }
    RunResult listing = runCommand(arguments);
    logDetail("getDistros: status = ", listing.status);
    if (listing.status != 0) {
        logError("getDistros: status = ", listing.status, "; ", listing.standardError);
        return {};
    }
    if (listing.standardOutput.empty()) {
        logDetail("getDistros: no distros");
        return {};
    }
    // wsl.exe prints UTF-16LE: without its zero bytes an ASCII name is plain text.
    std::erase(listing.standardOutput, '\0');
    std::vector<std::string> distros = words(listing.standardOutput);
    if (additionalLoggingEnabled()) {
        logDetail("getDistros: distros = ", Bracketed{distros});
    }
    return distros;
}

std::string getWslIpAddress()
{
    for (const NetworkInterface& nic : NetworkInterface::list()) {
        if (std::string address = getWslAdapterAddress(nic); !address.empty()) {
            return address;
        }
    }
    return {};
}

std::vector<std::string> wslArgumentsPrefix()
{
    // The executable is looked for first: when that fails, the host has not been asked for its release.
    const std::string wslPath = getExecutablePath();
    return commands::wslExec(wslPath, addKVRelease(hubName));
}

namespace {

// Starts the hub distribution, whichever distribution was asked for, and waits for the host's address on its network.
void startHubDistro()
{
    std::vector<std::string> arguments = wslArgumentsPrefix();
    arguments.emplace_back("~");
    runCommand(arguments);
    for (int round = 0; round < 3; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!getWslIpAddress().empty()) {
            return;
        }
    }
}

void ensureRunning(const std::string& localDistroName)
{
    const bool running = contains(getDistros(true), localDistroName);
    const std::string wslIPAddress = getWslIpAddress();
    logDetail("importFromTarIfNecessary: (1) wslIPAddress =  ", wslIPAddress);
    if (!wslIPAddress.empty() || running) {
        return;
    }
    logDetail("importFromTarIfNecessary: wslIPAddress is empty and distro is not running");
    startHubDistro();
}

std::string defaultTarFile()
{
    using namespace foundation::core;
    const path::Pathname directory{getContainerTarsDirectory(), path::native_form};
    path::Pathname file = path::concatenate_pathname(directory, distroArchives.preferred, path::native_form);
    const bool useGZ = path::exists(file.text);
    if (!useGZ) {
        file = path::concatenate_pathname(directory, distroArchives.other, path::native_form);
    }
    std::string localTarFilePath = text::cvt_ustring_utf8(file.text);
    logDetail("importFromTarIfNecessary: localTarFilePath = ", localTarFilePath);
    logDetail("importFromTarIfNecessary: useGZ = ", useGZ);
    return localTarFilePath;
}

// False when the folder was there. The standard library's throwing form names another operation on some toolchains, so
// the error is named here.
bool createDirectories(const std::filesystem::path& folder)
{
    std::error_code error;
    const bool wasCreated = std::filesystem::create_directories(folder, error);
    if (error) {
        throw std::filesystem::filesystem_error("create_directories", folder, error);
    }
    return wasCreated;
}

// Nothing when the folder cannot be made: wsl.exe will report that.
std::optional<bool> tryToCreate(const std::filesystem::path& folder)
{
    try {
        return createDirectories(folder);
    } catch (const std::exception& error) {
        logError("importFromTarIfNecessary: localDistroLocationPath folder wasn't created: ", error.what());
        return std::nullopt;
    }
}

// The name of a new folder for the distribution's files, which is there unless it could not be made.
std::string makeDistroFolder()
{
    using namespace foundation::core;
    std::string localDistroLocationPath = text::cvt_ustring_string(path::tmpnam(path::temp_directory_name(), {}, {}));
    logDetail("importFromTarIfNecessary: localDistroLocationPath = ", localDistroLocationPath);
    const std::filesystem::path folder = toPath(localDistroLocationPath);
    const bool distroLocationExist = path::exists(folder);
    logDetail("importFromTarIfNecessary: localDistroLocationPath exist ", localDistroLocationPath,
              " distroLocationExist = ", distroLocationExist);
    if (!distroLocationExist) {
        logDetail("importFromTarIfNecessary: localDistroLocationPath = ", localDistroLocationPath,
                  " doesn't exist, will attempt to create");
        if (const std::optional<bool> wasCreated = tryToCreate(folder)) {
            logDetail("importFromTarIfNecessary: localDistroLocationPath wasCreated = ", *wasCreated);
        }
    }
    return localDistroLocationPath;
}

void importDistro(const std::string& wslPath, const std::string& localDistroName, const std::string& tarPath)
{
    logDetail("importFromTarIfNecessary: attempt to import distro");
    const std::string localTarFilePath = tarPath.empty() ? defaultTarFile() : tarPath;
    const std::string localDistroLocationPath = makeDistroFolder();
    const RunResult import =
        runCommand(commands::wslImport(wslPath, localDistroName, localDistroLocationPath, localTarFilePath));
    if (import.status == 0) {
        return;
    }
    logDetail("importFromTarIfNecessary: distro's import unsuccessful status = ", import.status);
    logError("importFromTarIfNecessary: distro's import unsuccessful cout = ", import.standardOutput);
    logError("importFromTarIfNecessary: distro's import unsuccessful cerr = ", import.standardError);
    const std::string failure = "cout = \n" + import.standardOutput + "\n" + "cerr = \n" + import.standardError + "\n";
    throwError(container_support::WSL_CANNOT_IMPORT_TAR_FILE{}, localTarFilePath, failure);
}

} // namespace

void wslImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName)
{
    const std::string wslPath = getExecutablePath();
    logDetail("importFromTarIfNecessary: wslPath = ", wslPath);
    const std::string localDistroName = imageName.empty() ? addKVRelease(hubName) : imageName;
    logDetail("importFromTarIfNecessary: localDistroName = ", localDistroName);
    const bool exists = contains(getDistros(false), localDistroName);
    logDetail("importFromTarIfNecessary: kelp distro exists ", exists);
    if (exists) {
        ensureRunning(localDistroName);
    } else {
        importDistro(wslPath, localDistroName, tarPath);
    }
}

} // namespace orb::lvm::detail
