#include "test_child.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

void useBinaryStreams() {}

std::optional<std::string> variable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::string currentFolder()
{
    return std::filesystem::current_path().string();
}

long long openFileSize(const std::string& handle)
{
    struct stat status {};
    return ::fstat(std::stoi(handle), &status) == 0 ? status.st_size : -1;
}

void exitWith(long long status)
{
    std::exit(static_cast<int>(status));
}

void startAgain(const std::vector<std::string>& arguments)
{
    if (::fork() == 0) {
        std::vector<std::string> all{"test_child"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const int status = testChild(all);
        std::cout.flush();
        ::_exit(status);
    }
}

namespace {

// Which signals are blocked or ignored: their numbers.
int printSignals()
{
    sigset_t blocked;
    ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        if (::sigismember(&blocked, signal) == 1 || action.sa_handler == SIG_IGN) {
            std::cout << signal << ' ';
        }
    }
    return 0;
}

// Which descriptors are open: their numbers.
int printDescriptors()
{
    constexpr int enough = 1024;
    struct stat status {};
    for (int descriptor = 0; descriptor < enough; ++descriptor) {
        if (::fstat(descriptor, &status) == 0) {
            std::cout << descriptor << ' ';
        }
    }
    return 0;
}

// MODE...: the same in a session of its own.
int leaveSession(const std::vector<std::string>& arguments)
{
    // The leader of a group cannot leave it, so a child does.
    if (const pid_t id = ::fork(); id != 0) {
        return ::waitpid(id, nullptr, 0) == id ? 0 : 1;
    }
    ::setsid();
    std::vector<std::string> all{arguments.front()};
    all.insert(all.end(), arguments.begin() + 2, arguments.end());
    return testChild(all);
}

// Whether this program leads its session and its group, and whether it has a terminal.
int printSession()
{
    const int terminal = ::open("/dev/tty", O_RDWR | O_CLOEXEC);
    std::cout << (::getsid(0) == ::getpid() ? "session " : "") << (::getpgrp() == ::getpid() ? "group " : "")
              << (terminal >= 0 ? "terminal" : "");
    return 0;
}

} // namespace

std::optional<int> systemMode(const std::vector<std::string>& arguments)
{
    if (arguments[1] == "signals") {
        return printSignals();
    }
    if (arguments[1] == "descriptors") {
        return printDescriptors();
    }
    if (arguments[1] == "leave-session") {
        return leaveSession(arguments);
    }
    if (arguments[1] == "session") {
        return printSession();
    }
    if (arguments[1] == "raise") {
        return ::raise(std::stoi(arguments.at(2)));
    }
    return std::nullopt;
}

int main(int argc, char** argv)
{
    return testChild({argv, argv + argc});
}
