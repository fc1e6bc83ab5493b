#include "run_program.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (const std::string& text : texts) {
        result.push_back(const_cast<char*>(text.c_str()));
    }
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentWith(const Environment& added)
{
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        if (!name.starts_with("WSL") && !added.contains(name)) {
            entries.push_back(text);
        }
    }
    for (const auto& [name, value] : added) {
        entries.push_back(name + "=" + value);
    }
    return entries;
}

pid_t spawn(const Call& call, const std::filesystem::path& streams)
{
    std::vector<std::string> arguments = call.arguments;
    arguments.insert(arguments.begin(), call.program.string());
    const std::vector<std::string> environment = environmentWith(call.environment);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, (streams.string() + ".in").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, (streams.string() + ".out").c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (streams.string() + ".err").c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addchdir_np(&actions, call.folder.c_str());
    pid_t child = -1;
    const int error = posix_spawn(&child, call.program.c_str(), &actions, nullptr, pointers(arguments).data(),
                                  pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot run " + call.program.string());
    }
    return child;
}

} // namespace

Outcome runProgram(const Call& call)
{
    static std::atomic<int> calls = 0;
    const std::filesystem::path streams = call.folder / ("call" + std::to_string(++calls));
    writeFile(streams.string() + ".in", call.input);
    const pid_t child = spawn(call, streams);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(streams.string() + ".out"),
            readFile(streams.string() + ".err")};
}
