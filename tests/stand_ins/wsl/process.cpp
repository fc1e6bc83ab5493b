#include "process.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace stand_in {
namespace {

struct Status {
    char state = 'X';
    std::uint64_t started = 0;
};

// The program's name, in parentheses, may itself hold blanks and parentheses. The state follows it, and the time of the
// start is the nineteenth field after the state.
Status readStatus(pid_t number)
{
    std::ifstream file("/proc/" + std::to_string(number) + "/stat");
    std::string text;
    std::getline(file, text, '\0');
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) {
        return {};
    }
    std::istringstream fields(text.substr(nameEnd + 1));
    Status status;
    fields >> status.state;
    std::string skipped;
    for (int i = 0; i < 18; ++i) {
        fields >> skipped;
    }
    fields >> status.started;
    return status;
}

} // namespace

ProcessId identify(pid_t number)
{
    return {number, readStatus(number).started};
}

ProcessId thisProcess()
{
    return identify(::getpid());
}

bool isAlive(const ProcessId& process)
{
    const Status status = readStatus(process.number);
    return status.started == process.started && status.state != 'X' && status.state != 'Z';
}

void killAndWait(const ProcessId& process)
{
    while (isAlive(process)) {
        ::kill(process.number, SIGKILL);
        sleepMilliseconds(2);
    }
}

int waitForChild(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::int64_t now()
{
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000;
}

void sleepMilliseconds(long duration)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(duration));
}

} // namespace stand_in
