#include "case_system.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <arpa/inet.h>
#include <fcntl.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

const char* const temporaryVariable = "TMPDIR";

namespace {

std::size_t entries(const char* folder)
{
    const std::filesystem::directory_iterator listing(folder);
    return static_cast<std::size_t>(std::distance(begin(listing), end(listing)));
}

void require(int result, const char* step)
{
    if (result != 0) {
        throw std::system_error(errno, std::generic_category(), step);
    }
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
    return !error && program.string().starts_with((folder / "").string());
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

const bool canHaveWslAddress = true;

// The loopback device of a new network under another name: one is there, and the host's service takes names for
// descriptions as well.
WslAddress::WslAddress(const std::string& address) : before_(::open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC))
{
    constexpr char name[] = "(WSL)Virtual";
    require(::unshare(CLONE_NEWNET), "a network of its own needs root");
    const int any = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    std::strcpy(request.ifr_newname, name);
    require(::ioctl(any, SIOCSIFNAME, &request), "name of an interface");
    request = {};
    std::strcpy(request.ifr_name, name);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    ::inet_pton(AF_INET, address.c_str(), &place.sin_addr);
    std::memcpy(&request.ifr_addr, &place, sizeof place);
    require(::ioctl(any, SIOCSIFADDR, &request), "address of an interface");
    ::close(any);
}

WslAddress::~WslAddress()
{
    ::setns(before_, CLONE_NEWNET);
    ::close(before_);
}

std::size_t residentMemory()
{
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}
