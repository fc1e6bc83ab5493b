#include "player_system.h"

#include "simulation.h"

#include <csignal>
#include <cstdlib>

#include <unistd.h>

namespace faults {

const std::int32_t killedStatus = 128 + SIGKILL;
const std::int32_t minusOneStatus = 255;
const bool consolesHaveCodePages = false;

} // namespace faults

void makeStreamsBinary() {}

std::filesystem::path ownPath()
{
    return std::filesystem::read_symlink("/proc/self/exe");
}

long long ownProcess()
{
    return ::getpid();
}

void killSelf()
{
    ::raise(SIGKILL);
    std::abort();
}

void killProcess(long long process)
{
    ::kill(static_cast<pid_t>(process), SIGKILL);
}

long long startBeside(const std::filesystem::path& program, const std::string& argument)
{
    const pid_t id = ::fork();
    if (id == 0) {
        ::execl(program.c_str(), program.c_str(), argument.c_str(), nullptr);
        ::_exit(127);
    }
    return id;
}

void exitWithStatus(long long status)
{
    std::exit(static_cast<int>(status));
}
