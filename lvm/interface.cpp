// The exported operations that serve both backends. Each asks useWsl() at each call.
#include "orb/lvm.h"

#include "commands.h"
#include "docker.h"
#include "frame.h"
#include "runner.h"
#include "wsl.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace orb::lvm {

using namespace detail;

namespace {

constexpr char libraryPathVariable[] = "LD_LIBRARY_PATH";
constexpr char runtimeLibraryPath[] = "/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64";

std::string quotedIfBlank(const std::string& path)
{
    return path.find(' ') == std::string::npos ? path : '"' + path + '"';
}

std::string containerOrHub(const std::string& containerName)
{
    return containerName.empty() ? hubName : containerName;
}

// The caller's directories stay in front.
void addRuntimeLibraryPath(std::map<std::string, std::string>& env)
{
    const auto [entry, inserted] = env.try_emplace(libraryPathVariable, runtimeLibraryPath);
    if (!inserted) {
        entry->second += ':';
        entry->second += runtimeLibraryPath;
    }
}

// A key may end in "/" and one flag letter, the form that WSLENV gives a meaning to.
std::string_view withoutFlag(std::string_view key)
{
    const bool flagged = key.size() > 2 && key[key.size() - 2] == '/';
    return flagged ? key.substr(0, key.size() - 2) : key;
}

std::string assignment(std::string_view name, std::string_view value)
{
    std::string text;
    text.reserve(name.size() + 1 + value.size());
    text.append(name).append(1, '=').append(value);
    return text;
}

void addEnvironmentOptions(std::vector<std::string>& args, const std::map<std::string, std::string>& env)
{
    if (args.empty()) {
        return;
    }
    // Built apart and moved over when nothing can fail any more.
    std::vector<std::string> result;
    result.reserve(args.size() + 2 * env.size());
    result.resize(args.size() - 1);
    for (const auto& [key, value] : env) {
        result.emplace_back("-e");
        result.push_back(assignment(withoutFlag(key), value));
    }
    result.push_back(std::move(args.back()));
    std::move(args.begin(), std::prev(args.end()), result.begin());
    args = std::move(result);
}

void addWslEnvironment(std::map<std::string, std::string>& env)
{
    // A list that the caller made wins.
    if (env.contains("WSLENV")) {
        return;
    }
    std::string names;
    constexpr std::size_t usualLength = 16;
    names.reserve(usualLength * env.size());
    for (const auto& [key, value] : env) {
        if (!names.empty()) {
            names += ':';
        }
        names += key;
    }
    env.emplace("WSLENV", std::move(names));
}

} // namespace

void importFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
{
    if (useWsl()) {
        log(wslLogger(), Level::Detail, "importFromTarIfNecessary: WSL");
        wslImportFromTarIfNecessary(tarPath, imageName);
    } else {
        dockerImportFromTarIfNecessary(tarPath, imageName, useRootFsArchive);
    }
}

void clearDistroImage(const std::string& imageName)
{
    log(commonLogger(), Level::Detail, "clearDistroImage: COMMON");
    const std::string name = imageName.empty() ? addKVRelease(hubName) : imageName;
    log(commonLogger(), Level::Detail, "clearDistroImage: imageName = ", name);
    const std::string commandPath = getContainerExecutablePath();
    log(commonLogger(), Level::Detail, "clearDistroImage: commandPath = ", commandPath);
    const RunResult result = useWsl() ? runCommand(commands::wslUnregister(commandPath, name))
                                      : runCommand(commands::dockerRemoveImage(commandPath, name));
    log(commonLogger(), Level::Detail, "clearDistroImage: status = ", result.status);
    if (result.status != 0) {
        log(commonLogger(), Level::Error,
            "clearDistroImage: distro's clear unsuccessful cout = ", result.standardOutput);
        log(commonLogger(), Level::Error,
            "clearDistroImage: distro's clear unsuccessful cerr = ", result.standardError);
    }
}

bool startContainerIfNecessary(const std::string& containerName, const std::string& imageName)
{
    return useWsl() || runHubContainer(imageName, containerName);
}

bool stopContainerIfNecessary(const std::string& containerName)
{
    return useWsl() || removeHubContainer(containerName);
}

std::string getContainerCommandPrefix(const std::string& containerName)
{
    // The executable is looked for first: when that fails, the host has not been asked for its release. The operands of
    // "+" have no order, so the path is a statement of its own.
    if (useWsl()) {
        const std::string executable = quotedIfBlank(getExecutablePath());
        return executable + " -d " + addKVRelease(hubName) + " --exec ";
    }
    return quotedIfBlank(getDockerExecutablePath()) + " exec " + containerOrHub(containerName);
}

std::vector<std::string> getContainerArgumentsPrefix(const std::string& containerName)
{
    if (useWsl()) {
        return wslArgumentsPrefix();
    }
    return commands::dockerExec(getDockerExecutablePath(), containerOrHub(containerName));
}

std::string getContainerExecutablePath()
{
    return useWsl() ? getExecutablePath() : getDockerExecutablePath();
}

void applySharedEnvironment(std::vector<std::string>& args, std::map<std::string, std::string>& env)
{
    addRuntimeLibraryPath(env);
    if (useWsl()) {
        addWslEnvironment(env);
    } else {
        addEnvironmentOptions(args, env);
    }
}

} // namespace orb::lvm
