#include "machine.h"

#include "host/configuration.h"
#include "host/text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

const char pathSeparator = std::filesystem::path::preferred_separator == '/' ? ':' : ';';

std::string searchPathWith(const std::filesystem::path& folder, bool alone)
{
    const char* before = std::getenv("PATH");
    return alone || before == nullptr ? utf8(folder) : utf8(folder) + pathSeparator + before;
}

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

} // namespace

std::filesystem::path standInFolder()
{
    return STAND_IN_FOLDER;
}

std::filesystem::path hubArchive()
{
    return HUB_ARCHIVE;
}

std::string utf8(const std::filesystem::path& path)
{
    return foundation::core::text::cvt_ustring_utf8(path.u16string());
}

SearchPath::SearchPath(const std::filesystem::path& folder, bool alone) : path_("PATH", searchPathWith(folder, alone))
{
}

StandIns::StandIns() : searchPath_(standInFolder()), bridge_(bridgeVariables()) {}

InstallTree::InstallTree(const std::string& release, const std::u16string& folderName)
    : root_(folder_.path() / std::filesystem::path(folderName))
{
    std::filesystem::create_directories(archiveFolder());
    foundation::core::config::Configuration configuration;
    configuration.setInstallationRoot(utf8(root_));
    configuration.setRelease(release);
    foundation::core::config::configure(configuration);
}

std::filesystem::path InstallTree::archiveFolder() const
{
    return root_ / "toolbox" / "shared" / "kavori" / "kelp" / "tar_files";
}

void InstallTree::install(const std::string& name) const
{
    std::filesystem::copy_file(hubArchive(), archiveFolder() / name);
}

Wsl::Wsl()
    : state_("WSL_STAND_IN_STATE", unixPath(folder_.path() / "state")),
      calls_("STAND_IN_CALLS", unixPath(folder_.path() / "calls"))
{
}

Wsl::~Wsl()
{
    clear();
}

void Wsl::clear() const
{
    for (const std::string& name : distributions()) {
        run({"--unregister", name});
    }
}

orb::process::detail::RunResult Wsl::run(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), "wsl.exe");
    return orb::process::detail::run(arguments, {{"WSL_UTF8", "1"}, {"STAND_IN_CALLS", ""}, {"WSL_STAND_IN_MODE", ""}});
}

void Wsl::import(const std::string& name) const
{
    const std::filesystem::path folder = folder_.path() / name;
    const auto result = run({"--import", name, utf8(folder), utf8(hubArchive()), "--version", "2"});
    ASSERT_EQ(result.status, 0) << result.standardOutput;
}

std::vector<std::string> Wsl::distributions() const
{
    return wordsOf(run({"--list", "-q"}).standardOutput);
}

std::vector<std::string> Wsl::running() const
{
    return wordsOf(run({"--list", "-q", "--running"}).standardOutput);
}

std::vector<std::string> Wsl::takeCalls() const
{
    std::vector<std::string> calls;
    std::ifstream file(folder_.path() / "calls");
    for (std::string line; std::getline(file, line);) {
        calls.push_back(line);
    }
    file.close();
    std::filesystem::remove(folder_.path() / "calls");
    return calls;
}

ScriptedPrograms::ScriptedPrograms() : searchPath_(folder_.path(), true) {}

void ScriptedPrograms::add(const std::string& name, const std::string& standardOutput, int status,
                           const std::string& standardError) const
{
    std::filesystem::copy_file(SCRIPTED_PROGRAM, path(name), std::filesystem::copy_options::overwrite_existing);
    const std::string stem = utf8(path(name));
    std::ofstream(std::filesystem::path(stem + ".stdout"), std::ios::binary) << standardOutput;
    std::ofstream(std::filesystem::path(stem + ".stderr"), std::ios::binary) << standardError;
    std::ofstream(std::filesystem::path(stem + ".status")) << status;
}

std::filesystem::path ScriptedPrograms::path(const std::string& name) const
{
    const bool hasSuffix = name.ends_with(".exe");
    return folder_.path() / (hasSuffix ? name : name + programSuffix);
}

bool temporaryDirectoryIsClean(const std::filesystem::path& directory)
{
    return std::filesystem::is_empty(directory);
}

TemporaryDirectory::TemporaryDirectory(const std::filesystem::path& directory)
    : path_(directory), variable_(temporaryDirectoryVariable, utf8(directory))
{
}

TemporaryDirectory::TemporaryDirectory()
    : folder_(std::in_place), path_(folder_->path()), variable_(temporaryDirectoryVariable, utf8(path_))
{
}
