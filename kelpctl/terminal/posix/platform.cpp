#include "terminal/platform.h"

#include "host/environment.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace kelpctl {

std::vector<std::string> programArguments(int argc, const char* const argv[])
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    if (setenv(name.c_str(), value.c_str(), 1) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot set " + name);
    }
}

bool isTerminal(StandardStream stream)
{
    switch (stream) {
    case StandardStream::input:
        return isatty(STDIN_FILENO) == 1;
    case StandardStream::output:
        return isatty(STDOUT_FILENO) == 1;
    case StandardStream::error:
        break;
    }
    return isatty(STDERR_FILENO) == 1;
}

bool showsColours(StandardStream stream)
{
    return isTerminal(stream);
}

std::filesystem::path userFolder()
{
    return foundation::core::env::variable("HOME").value_or("");
}

bool mayWriteInto(const std::filesystem::path& folder)
{
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

// The first of the locale's variables that is set decides, "de_DE.UTF-8" being German. "C" and "POSIX" are no language.
std::string systemLanguage()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string locale = foundation::core::env::variable(variable).value_or("");
        if (!locale.empty()) {
            const std::string code = locale.substr(0, locale.find_first_of("_.@"));
            return code == "C" || code == "POSIX" ? std::string() : code;
        }
    }
    return {};
}

std::string processorName()
{
    utsname system{};
    if (uname(&system) != 0) {
        return {};
    }
    const std::string machine = system.machine;
    return machine == "x86_64"                              ? "amd64"
           : machine == "aarch64"                           ? "arm64"
           : machine.starts_with("arm")                     ? "arm"
           : machine.size() == 4 && machine.ends_with("86") ? "386"
                                                            : machine;
}

// Exit statuses have eight bits here: -1 and 255 are one.
std::filesystem::path stateFolder()
{
    using foundation::core::env::variable;
    if (const std::string state = variable("XDG_STATE_HOME").value_or(""); !state.empty()) {
        return std::filesystem::path(state) / "kelpctl";
    }
    const std::string home = variable("HOME").value_or("");
    return home.empty() ? std::filesystem::path() : std::filesystem::path(home) / ".local" / "state" / "kelpctl";
}

std::vector<std::string> namesOfUserAndComputer()
{
    using foundation::core::env::variable;
    std::array<char, 256> host{};
    std::vector<std::string> names = {variable("USER").value_or(""), variable("LOGNAME").value_or(""),
                                      std::filesystem::path(variable("HOME").value_or("")).filename().string()};
    // The last byte stays zero.
    if (::gethostname(host.data(), host.size() - 1) == 0) {
        names.emplace_back(host.data());
    }
    return names;
}

std::int32_t wslFailureStatus()
{
    return 255;
}

bool wslFailureIsAmbiguous()
{
    return true;
}

StandardStreams::StandardStreams() = default;
StandardStreams::~StandardStreams() = default;

} // namespace kelpctl
