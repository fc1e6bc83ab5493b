#include "case_system.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

const char* const temporaryVariable = "TMPDIR";

namespace {

std::size_t entries(const char* folder)
{
    const std::filesystem::directory_iterator listing(folder);
    return static_cast<std::size_t>(std::distance(begin(listing), end(listing)));
}

} // namespace

std::size_t openHandles()
{
    return entries("/proc/self/fd");
}

bool isRunning(long long process, const std::filesystem::path& folder)
{
    std::error_code error;
    const std::filesystem::path program =
        std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", error);
    return !error && program.parent_path() == folder;
}

std::size_t threadCount()
{
    return entries("/proc/self/task");
}

void adoptOrphans()
{
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

std::size_t remainingChildren()
{
    while (::waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    // The only child that a case may have left behind is the helper.
    return ::waitpid(-1, nullptr, WNOHANG) == 0 ? 1 : 0;
}

std::size_t residentMemory()
{
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}
