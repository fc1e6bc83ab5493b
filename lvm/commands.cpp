#include "commands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace orb::lvm::detail {

namespace commands {

CommandLine wslLookUp(const std::string& tool)
{
    return {tool, "wsl.exe"};
}

CommandLine wslVersion(const std::string& wsl)
{
    return {wsl, "-v"};
}

CommandLine wslCheck(const std::string& wsl)
{
    return {wsl, "-l", "-q"};
}

CommandLine wslList(const std::string& wsl)
{
    return {wsl, "--list", "-q"};
}

CommandLine wslListRunning(const std::string& wsl)
{
    return {wsl, "--list", "-q", "--running"};
}

CommandLine wslImport(const std::string& wsl, const std::string& name, const std::string& folder,
                      const std::string& archive)
{
    return {wsl, "--import", name, folder, archive, "--version", "2"};
}

CommandLine wslUnregister(const std::string& wsl, const std::string& name)
{
    return {wsl, "--unregister", name};
}

CommandLine wslExec(const std::string& wsl, const std::string& name)
{
    return {wsl, "-d", name, "--exec"};
}

CommandLine dockerLookUp()
{
    return {"where", "docker.exe"};
}

CommandLine dockerImages(const std::string& client)
{
    return {client, "images", "--format", "{{.Repository}}"};
}

CommandLine dockerContainers(const std::string& client, const std::string& image)
{
    return {client, "container", "ls", "-f", "ancestor=" + image, "--format", "{{.Names}}"};
}

CommandLine dockerLoad(const std::string& client, const std::string& archive)
{
    return {client, "load", "-i", archive};
}

CommandLine dockerImport(const std::string& client, const std::string& archive, const std::string& image)
{
    return {client, "import", archive, image};
}

CommandLine dockerPull(const std::string& client, const std::string& reference)
{
    return {client, "pull", "-q", reference};
}

CommandLine dockerTag(const std::string& client, const std::string& reference, const std::string& image)
{
    return {client, "tag", reference, image};
}

CommandLine dockerRun(const std::string& client, const std::string& container,
                      const std::vector<std::string>& furtherArguments, const std::string& image)
{
    CommandLine line = {client, "run", "-di", "--network=host", "--name=" + container};
    line.insert(line.end(), furtherArguments.begin(), furtherArguments.end());
    line.push_back(image);
    return line;
}

CommandLine dockerRemoveContainer(const std::string& client, const std::string& container)
{
    return {client, "container", "rm", "-f", container};
}

CommandLine dockerRemoveImage(const std::string& client, const std::string& image)
{
    return {client, "image", "rm", "--force", image};
}

CommandLine dockerExec(const std::string& client, const std::string& container)
{
    return {client, "exec", container};
}

} // namespace commands

namespace {

struct Verb {
    std::string_view word;
    Command command;
};

constexpr std::size_t verbPosition = 1;
constexpr std::array verbs = {
    Verb{"wsl.exe", Command::wslLookUp},
    Verb{"-v", Command::wslVersion},
    Verb{"-l", Command::wslCheck},
    Verb{"--import", Command::wslImport},
    Verb{"--unregister", Command::wslUnregister},
    Verb{"docker.exe", Command::dockerLookUp},
    Verb{"load", Command::dockerLoad},
    Verb{"import", Command::dockerImport},
    Verb{"pull", Command::dockerPull},
    Verb{"tag", Command::dockerTag},
    Verb{"run", Command::dockerRun},
    Verb{"image", Command::image},
    Verb{"container", Command::container},
};

constexpr std::size_t distributionPosition = 2;
constexpr std::size_t importFolderPosition = 3;

// Where the source stands in a command line that has one; 0 in any other.
std::size_t sourcePosition(Command command)
{
    switch (command) {
    case Command::wslImport:
        return 4;
    case Command::dockerImport:
        return 2;
    case Command::dockerLoad:
    case Command::dockerPull:
        return 3;
    default:
        return 0;
    }
}

std::string at(const CommandLine& line, std::size_t position)
{
    return position < line.size() ? line[position] : std::string();
}

} // namespace

Command commandOf(const CommandLine& line)
{
    const std::string word = at(line, verbPosition);
    const auto verb = std::find_if(verbs.begin(), verbs.end(), [&word](const Verb& each) { return each.word == word; });
    return verb == verbs.end() ? Command::other : verb->command;
}

std::string sourceOf(const CommandLine& line)
{
    const std::size_t position = sourcePosition(commandOf(line));
    return position == 0 ? std::string() : at(line, position);
}

std::string importFolderOf(const CommandLine& line)
{
    return commandOf(line) == Command::wslImport ? at(line, importFolderPosition) : std::string();
}

const std::string& distributionOf(const CommandLine& line)
{
    return line.at(distributionPosition);
}

} // namespace orb::lvm::detail
