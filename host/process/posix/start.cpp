#include "start.h"

#include "arguments.h"
#include "program_search.h"

#include <csignal>
#include <cstring>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace orb::process::detail {

namespace {

void check(int error)
{
    if (error != 0) { // uncovered: without memory only
        throw std::system_error(error, std::system_category(), "cannot prepare the start of a program");
    }
}

class FileActions {
public:
    FileActions() { check(::posix_spawn_file_actions_init(&actions_)); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    posix_spawn_file_actions_t* get() noexcept { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

class Attributes {
public:
    Attributes() { check(::posix_spawnattr_init(&attributes_)); }
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    posix_spawnattr_t* get() noexcept { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

void setStream(FileActions& actions, int stream, int source)
{
    // A stream that the caller itself does not have is the null device too.
    if (source == nullDevice || (source == stream && ::fcntl(source, F_GETFD) < 0)) {
        check(::posix_spawn_file_actions_addopen(actions.get(), stream, "/dev/null", O_RDWR, 0));
    } else {
        check(::posix_spawn_file_actions_adddup2(actions.get(), source, stream));
    }
}

void setStreamsAndFolder(FileActions& actions, const StartRequest& request)
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        setStream(actions, stream, request.streams[static_cast<std::size_t>(stream)]);
    }
    // Other parts of the host may have opened files without saying that programs must not inherit them.
    check(::posix_spawn_file_actions_addclosefrom_np(actions.get(), STDERR_FILENO + 1));
    if (!request.workingDir.empty() && !isDriveDesignator(request.workingDir)) {
        check(::posix_spawn_file_actions_addchdir_np(actions.get(), request.workingDir.c_str()));
    }
}

void setSignals(Attributes& attributes, bool ownGroup)
{
    sigset_t none;
    ::sigemptyset(&none);
    check(::posix_spawnattr_setsigmask(attributes.get(), &none));
    sigset_t all;
    ::sigfillset(&all);
    check(::posix_spawnattr_setsigdefault(attributes.get(), &all));
    const int session = ownGroup ? POSIX_SPAWN_SETSID : 0;
    check(::posix_spawnattr_setflags(attributes.get(),
                                     static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | session)));
}

// The system takes writable text that it does not write to.
char* writable(const char* text)
{
    return const_cast<char*>(text);
}

std::vector<char*> argumentPointers(const std::vector<std::string>& arguments)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        pointers.push_back(writable(argument.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> assignments(const Environment& environment)
{
    std::vector<std::string> lines;
    for (const auto& [name, value] : environment) {
        lines.push_back(name);
        lines.back().append("=").append(value);
    }
    return lines;
}

// The inherited variables that `environment` does not replace, then the lines.
std::vector<char*> environmentPointers(const Environment& environment, const std::vector<std::string>& lines)
{
    std::vector<char*> pointers;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        const std::string_view text = *variable;
        if (environment.find(std::string(text.substr(0, text.find('=')))) == environment.end()) {
            pointers.push_back(*variable);
        }
    }
    for (const std::string& line : lines) {
        pointers.push_back(writable(line.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

pid_t startProgram(const StartRequest& request)
{
    const std::string& program = request.arguments.front();
    const std::string file = findProgram(program, request.environment);
    FileActions actions;
    setStreamsAndFolder(actions, request);
    Attributes attributes;
    setSignals(attributes, request.ownGroup);
    const std::vector<std::string> lines = assignments(request.environment);
    pid_t id = 0;
    const int error =
        ::posix_spawn(&id, file.c_str(), actions.get(), attributes.get(), argumentPointers(request.arguments).data(),
                      environmentPointers(request.environment, lines).data());
    if (error != 0) {
        throw std::system_error(error, std::system_category(), startFailure(program, request.workingDir));
    }
    return id;
}

} // namespace orb::process::detail
