#include "command_line.h"
#include "inside.h"
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
#include <cerrno>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace stand_in {
namespace {

// What the command line asks for.
struct Request {
    std::string distribution;
    std::string user;
    std::string folder;
    // The program and its arguments, or, where there are none, a line for the user's shell.
    std::vector<std::string> arguments;
    std::string shellLine;
};

std::string requiredValue(std::string_view option, std::string_view value)
{
    if (value.empty()) {
        failOnMissingValue(option);
    }
    return std::string(value);
}

std::vector<std::string> programBehind(std::string_view rest)
{
    std::vector<std::string> arguments = splitProgramAndArguments(rest);
    if (arguments.empty()) {
        fail(failures::badParameter);
    }
    return arguments;
}

void takeDistribution(Request& request, std::string_view option, std::string_view& rest)
{
    if (!request.distribution.empty()) {
        fail("The distribution name has already been set.");
    }
    request.distribution = requiredValue(option, takeWord(rest));
}

// "~" means the home folder as the very first word only. The first word that is no option begins the shell's line,
// which is handed on as it stands.
Request parseRequest(std::string_view line)
{
    Request request;
    std::string_view rest = withoutLeadingBlanks(line);
    if (std::string_view ahead = rest; takeWord(ahead) == "~") {
        request.folder = rest.substr(0, 1);
        rest = ahead;
    }
    while (!rest.empty()) {
        const std::string_view here = rest;
        const std::string_view word = takeWord(rest);
        if (word == "--exec" || word == "-e") {
            request.arguments = programBehind(rest);
            return request;
        }
        if (word == "--" || !word.starts_with('-')) {
            request.shellLine = word == "--" ? rest : here;
            return request;
        }
        if (word == "--distribution" || word == "-d") {
            takeDistribution(request, word, rest);
        } else if (word == "--user" || word == "-u") {
            request.user = requiredValue(word, takeWord(rest));
        } else if (word == "--cd") {
            request.folder = requiredValue(word, takeQuotedValue(rest));
        } else {
            failOnUnknown(word);
        }
    }
    return request;
}

std::vector<std::string> fieldsOf(const std::string& line)
{
    std::vector<std::string> fields(1);
    for (const char c : line) {
        if (c == ':') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    fields.resize(std::max<std::size_t>(fields.size(), 7));
    return fields;
}

unsigned toNumber(const std::string& text)
{
    unsigned number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// Root is there even without a list of users.
User findUser(const std::filesystem::path& root, const std::string& name)
{
    std::ifstream file(root / "etc/passwd");
    for (std::string line; std::getline(file, line);) {
        const std::vector<std::string> fields = fieldsOf(line);
        if (name.empty() ? fields[2] == "0" : fields[0] == name) {
            return {fields[0], toNumber(fields[2]), toNumber(fields[3]), fields[5],
                    fields[6].empty() ? "/bin/sh" : fields[6]};
        }
    }
    if (!name.empty() && name != "root") {
        fail(failures::userUnknown);
    }
    return {"root", 0, 0, "/root", "/bin/sh"};
}

std::string folderInside(const Request& request)
{
    if (request.folder == "~") {
        return {};
    }
    return isWindowsPath(request.folder) ? mountedPath(request.folder) : request.folder;
}

// Where it has no counterpart inside, a warning from there says so: UTF-8 with LF.
std::string callersFolder()
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    if (!error && !modeIsOn("no-drives")) {
        return folder;
    }
    if (environmentOr("WSL_DISABLE_WARNINGS", "") != "1") {
        printRawError("wsl: Failed to translate '" + folder.string() + "'\n");
    }
    return {};
}

Program makeProgram(const Request& request, const Distribution& distribution, const Relays& relays)
{
    Program program;
    program.streams = relays.inside();
    program.root = rootFileSystem(distribution);
    program.user = findUser(program.root, request.user);
    program.folder = folderInside(request);
    program.callersFolder = request.folder.empty() ? callersFolder() : std::string();
    program.environment = linuxEnvironment(program.user, distribution.name);
    program.arguments = request.arguments;
    if (program.arguments.empty() && request.shellLine.empty()) {
        program.arguments = {program.user.shell, "-l"};
    } else if (program.arguments.empty()) {
        program.arguments = {program.user.shell, "-c", request.shellLine};
    }
    return program;
}

Distribution& findDistribution(Registry& registry, const std::string& name)
{
    if (name.empty() && registry.defaultName.empty()) {
        fail(failures::noneInstalled);
    }
    Distribution* distribution = registry.find(name.empty() ? registry.defaultName : name);
    if (distribution == nullptr || !isInstalled(*distribution)) {
        fail(failures::unknownDistribution);
    }
    return *distribution;
}

// A distribution that runs has its disk open, and nobody can take it away.
void requireDisk(const Distribution& distribution)
{
    if (distribution.version != 2 || isRunning(distribution) || std::filesystem::exists(disk(distribution))) {
        return;
    }
    const bool folderIsThere = std::filesystem::exists(distribution.basePath);
    fail(folderIsThere ? failures::diskGone : failures::diskGoneWithItsFolder, disk(distribution).string());
}

struct Started {
    std::string distribution;
    pid_t firstProcess = 0;
    int endings = -1;
};

Started start(const Request& request, Relays& relays)
{
    Registry registry;
    Distribution& distribution = findDistribution(registry, request.distribution);
    requireVirtualMachine("CreateInstance");
    requireDisk(distribution);
    const Program program = makeProgram(request, distribution, relays);
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail(failures::catastrophe);
    }
    const pid_t child = cloneIntoNamespaces();
    if (child == 0) {
        runFirstProcess(program, ends[1]);
    }
    ::close(ends[1]);
    relays.closeInside();
    if (child < 0) {
        printRawError("wsl stand-in: new namespaces need root\n");
        fail(failures::catastrophe);
    }
    distribution.clients.push_back(thisProcess());
    distribution.programs.push_back(identify(child));
    registry.save();
    return {distribution.name, child, ends[0]};
}

// A distribution that was stopped in the meantime has no clients any more.
void leave(const std::string& name)
{
    Registry registry;
    Distribution* distribution = registry.find(name);
    if (distribution == nullptr) {
        return;
    }
    const pid_t self = ::getpid();
    if (std::erase_if(distribution->clients, [&](const ProcessId& each) { return each.number == self; }) != 0) {
        distribution->lastClientEnd = now();
        registry.save();
    }
}

int toExitStatus(int waitStatus)
{
    const int status = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : waitStatus;
    if (status == 67) {
        fail(failures::userUnknown);
    }
    if (status == 87) {
        fail(failures::tooManyTerminals);
    }
    return status;
}

} // namespace

int runInside(std::string_view line)
{
    const Request request = parseRequest(line);
    Relays relays;
    const Started started = start(request, relays);
    // A key that interrupts is meant for the program inside.
    ::signal(SIGINT, SIG_IGN);
    ::signal(SIGQUIT, SIG_IGN);
    // None comes when the distribution is stopped in the meantime.
    const std::optional<Ending> ending = relays.copyUntilEnd(started.endings);
    if (!ending || !ending->othersLeft) {
        waitForChild(started.firstProcess);
    }
    leave(started.distribution);
    return ending ? toExitStatus(ending->status) : 1;
}

} // namespace stand_in
