#include "bare_process.h"

#include "room.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace benchmarks {

namespace {

void check(int error)
{
    if (error != 0) {
        throw std::system_error(error, std::system_category(), "the floor");
    }
}

using Ends = std::array<int, 2>;

// As large as the system allows when much will come: fewer turns.
Ends makePipe(std::size_t expected)
{
    constexpr std::size_t usual = 65536;
    constexpr int largest = 1 << 20;
    Ends ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno);
    if (expected > usual) {
        check(::fcntl(ends[0], F_SETPIPE_SZ, largest) >= 0 ? 0 : errno);
    }
    return ends;
}

pid_t start(const BareProcess& process, const Ends& output, const Ends& error)
{
    posix_spawn_file_actions_t actions;
    check(::posix_spawn_file_actions_init(&actions));
    check(::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO));
    check(::posix_spawn_file_actions_adddup2(&actions, error[1], STDERR_FILENO));
    pid_t id = 0;
    check(::posix_spawn(&id, process.file, &actions, nullptr, process.arguments, process.environment));
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(output[1]);
    ::close(error[1]);
    return id;
}

void readBoth(const std::array<int, 2>& pipes, std::array<Room, 2>& rooms)
{
    std::array<pollfd, 2> waits{{{pipes[0], POLLIN, 0}, {pipes[1], POLLIN, 0}}};
    while (waits[0].fd >= 0 || waits[1].fd >= 0) {
        check(::poll(waits.data(), waits.size(), -1) > 0 ? 0 : errno);
        for (std::size_t i = 0; i < waits.size(); ++i) {
            if (waits[i].fd < 0 || waits[i].revents == 0) {
                continue;
            }
            const ssize_t size = ::read(waits[i].fd, rooms[i].free(), rooms[i].freeSize());
            if (size > 0) {
                rooms[i].add(static_cast<std::size_t>(size));
            } else {
                ::close(waits[i].fd);
                waits[i].fd = -1;
            }
        }
    }
}

} // namespace

Captured runBare(const BareProcess& process, const Sizes& expected)
{
    const Ends output = makePipe(expected.output);
    const Ends error = makePipe(expected.error);
    std::array<Room, 2> rooms{Room(expected.output), Room(expected.error)};
    const pid_t id = start(process, output, error);
    readBoth({output[0], error[0]}, rooms);
    int status = 0;
    check(::waitpid(id, &status, 0) == id ? 0 : errno);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), {rooms[0].used(), rooms[1].used()}};
}

Captured runFloor(const Arguments& arguments, const Sizes& expected)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str())); // the system takes it so and does not write
    }
    pointers.push_back(nullptr);
    return runBare({pointers[0], pointers.data(), environ}, expected);
}

} // namespace benchmarks
