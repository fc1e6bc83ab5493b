// The machine that the system tests run on: the stand-ins on the search path, an install tree with archives, a
// temporary directory and a WSL registry, all of the test's own.
#pragma once

#include "environment_variable.h"
#include "registered.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The folder of `where` and of the stand-ins that stand behind wsl.exe and docker.exe.
std::filesystem::path standInFolder();

// The archive of the hub's root file system.
std::filesystem::path hubArchive();

// A path as the Linux programs behind the stand-ins know it.
std::string unixPath(const std::filesystem::path& path);

// A path as narrow UTF-8 text.
std::string utf8(const std::filesystem::path& path);

// The temporary directory's variable, which differs between the systems.
extern const char* const temporaryDirectoryVariable;

// What the bridge between Wine and Linux programs wants to know; nothing where there is no bridge.
std::vector<std::unique_ptr<EnvironmentVariable>> bridgeVariables();

// The suffix of a program's file name: ".exe" or nothing.
extern const char* const programSuffix;

// Puts a folder in front of the search path while it lives.
class SearchPath {
public:
    // The folder alone, when `alone` is true.
    explicit SearchPath(const std::filesystem::path& folder, bool alone = false);

private:
    EnvironmentVariable path_;
};

// The stand-ins in front of the search path; under Wine, with the Linux programs that are behind them.
class StandIns {
public:
    StandIns();

private:
    SearchPath searchPath_;
    std::vector<std::unique_ptr<EnvironmentVariable>> bridge_;
};

// An install tree in a folder of its own, made known to the host services.
class InstallTree {
public:
    explicit InstallTree(const std::string& release = "R2026b", const std::u16string& folderName = u"tree");

    std::filesystem::path archiveFolder() const;
    // Copies the hub's archive into the tree under the given name.
    void install(const std::string& name = "kelp_hub_distro.tar.gz") const;
    const std::filesystem::path& root() const { return root_; }

private:
    TemporaryFolder folder_;
    std::filesystem::path root_;
};

// A WSL of the test's own, empty at first.
class Wsl {
public:
    Wsl();
    ~Wsl();
    Wsl(const Wsl&) = delete;
    Wsl& operator=(const Wsl&) = delete;

    // Runs wsl.exe with the arguments, its text in UTF-8.
    orb::process::detail::RunResult run(std::vector<std::string> arguments) const;
    // Registers a distribution from the hub's archive.
    void import(const std::string& name) const;
    // Unregisters all. A distribution's folder must go this way: it holds links that mean nothing on Windows.
    void clear() const;
    // The registered distributions, or those that run.
    std::vector<std::string> distributions() const;
    std::vector<std::string> running() const;
    // The command lines of wsl.exe and where so far, without the program; forgotten afterwards.
    std::vector<std::string> takeCalls() const;

private:
    TemporaryFolder folder_;
    EnvironmentVariable state_;
    EnvironmentVariable calls_;
    StandIns standIns_;
};

// Takes the disk of a distribution away, as a cleaner does that empties the temporary folder.
class LostDisk {
public:
    LostDisk(const std::string& distribution, const std::filesystem::path& temporaryFolder);

private:
    // Under Wine the stand-in's registry is not that of Windows; there the loss is written down.
    std::optional<Registered> registered_;
};

// What WSL writes down about a distribution that it has imported. Under Wine the stand-in does not write that into the
// registry, so this does; elsewhere it has no work.
class WrittenDown {
public:
    explicit WrittenDown(const std::string& distribution);

private:
    TemporaryFolder folder_;
    std::optional<Registered> registered_;
};

// Programs that print what a test wants: "NAME" in a folder of their own, which is the whole search path.
class ScriptedPrograms {
public:
    ScriptedPrograms();

    void add(const std::string& name, const std::string& standardOutput, int status = 0,
             const std::string& standardError = {}) const;
    std::filesystem::path path(const std::string& name) const;

private:
    TemporaryFolder folder_;
    SearchPath searchPath_;
};

// Whether the temporary directory holds nothing of the library's.
bool temporaryDirectoryIsClean(const std::filesystem::path& directory);

// A temporary directory of the test's own.
class TemporaryDirectory {
public:
    explicit TemporaryDirectory(const std::filesystem::path& directory);
    TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }

private:
    std::optional<TemporaryFolder> folder_;
    std::filesystem::path path_;
    EnvironmentVariable variable_;
};
