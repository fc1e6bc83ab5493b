// The command lines that the library runs, and what stands where in them. Who observes the runs of a process tells by
// these what the library is doing; nobody else may know a position.
#pragma once

#include <string>
#include <vector>

namespace orb::lvm::detail {

using CommandLine = std::vector<std::string>;

namespace commands {

// `tool` is "where", or "which" where that fails.
CommandLine wslLookUp(const std::string& tool);
CommandLine wslVersion(const std::string& wsl);
// The interpreter's question whether WSL can be used.
CommandLine wslCheck(const std::string& wsl);
// The names of the distributions; those being installed or removed are not among them.
CommandLine wslList(const std::string& wsl);
CommandLine wslListRunning(const std::string& wsl);
CommandLine wslImport(const std::string& wsl, const std::string& name, const std::string& folder,
                      const std::string& archive);
CommandLine wslUnregister(const std::string& wsl, const std::string& name);
// The program to run inside, and its arguments, are appended.
CommandLine wslExec(const std::string& wsl, const std::string& name);

CommandLine dockerLookUp();
CommandLine dockerImages(const std::string& client);
CommandLine dockerContainers(const std::string& client, const std::string& image);
CommandLine dockerLoad(const std::string& client, const std::string& archive);
CommandLine dockerImport(const std::string& client, const std::string& archive, const std::string& image);
CommandLine dockerPull(const std::string& client, const std::string& reference);
CommandLine dockerTag(const std::string& client, const std::string& reference, const std::string& image);
CommandLine dockerRun(const std::string& client, const std::string& container,
                      const std::vector<std::string>& furtherArguments, const std::string& image);
CommandLine dockerRemoveContainer(const std::string& client, const std::string& container);
CommandLine dockerRemoveImage(const std::string& client, const std::string& image);
// The program to run inside, and its arguments, are appended.
CommandLine dockerExec(const std::string& client, const std::string& container);

} // namespace commands

// What a command line is for. Told by the argument behind the program, so a question of somebody else's about images or
// containers counts as `image` and `container`, too.
enum class Command {
    other,
    wslLookUp,
    wslVersion,
    wslCheck,
    wslImport,
    wslUnregister,
    dockerLookUp,
    dockerLoad,
    dockerImport,
    dockerPull,
    dockerTag,
    dockerRun,
    image,
    container,
};

Command commandOf(const CommandLine& line);

// The archive, or the image of the registry, that the command makes the environment from; empty for any other command.
std::string sourceOf(const CommandLine& line);

// The folder that a distribution is imported to; empty for any other command.
std::string importFolderOf(const CommandLine& line);

// The distribution that a line of commands::wslExec names.
const std::string& distributionOf(const CommandLine& line);

} // namespace orb::lvm::detail
