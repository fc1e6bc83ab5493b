// Backs a Windows program under Wine by a Linux one. Installed as NAME.exe, it runs the program that the environment
// variable WINE_BRIDGE_NAME tells, with the same arguments, streams, environment and exit status.
#include "bridge.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bridge {
namespace {

// On the caller's standard error, which is a handle of Wine's.
void complain(const std::string& text)
{
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};

Pipe makePipe()
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        complain("bridge: no pipe\r\n");
    }
    return {ends[0], ends[1]};
}

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> result;
    for (const std::string& text : texts) {
        result.push_back(const_cast<char*>(text.c_str()));
    }
    result.push_back(nullptr);
    return result;
}

struct Child {
    pid_t number = -1;
    Pipe input;
    Pipe output;
    Pipe errors;
    Pipe status;
};

// Between fork and exec nothing but system calls: this process has other threads. The program does not outlive the
// bridge.
Child start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder)
{
    Child child{-1, makePipe(), makePipe(), makePipe(), makePipe()};
    std::vector<std::string> environment = linuxEnvironment();
    environment.push_back("WSL_STAND_IN_STATUS_FD=" + std::to_string(child.status.writeEnd));
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> envp = pointers(environment);
    child.number = fork();
    if (child.number == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        signal(SIGPIPE, SIG_DFL);
        dup2(child.input.readEnd, STDIN_FILENO);
        dup2(child.output.writeEnd, STDOUT_FILENO);
        dup2(child.errors.writeEnd, STDERR_FILENO);
        fcntl(child.status.writeEnd, F_SETFD, 0);
        if (chdir(folder.c_str()) == 0) {
            execve(program.c_str(), argv.data(), envp.data());
        }
        _exit(127);
    }
    close(child.input.readEnd);
    close(child.output.writeEnd);
    close(child.errors.writeEnd);
    close(child.status.writeEnd);
    return child;
}

// The full 32-bit status where the program tells it; what Linux says otherwise.
unsigned exitStatus(const Child& child, int waitStatus)
{
    char text[16] = {};
    fcntl(child.status.readEnd, F_SETFL, O_NONBLOCK);
    if (read(child.status.readEnd, text, sizeof text - 1) > 0) {
        return static_cast<unsigned>(std::strtol(text, nullptr, 10));
    }
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128U + WTERMSIG(waitStatus);
}

unsigned run()
{
    const std::string name = programName();
    const std::string program = backingProgram(name);
    if (program.empty()) {
        complain("bridge: WINE_BRIDGE_" + name + " must name a Linux program\r\n");
        return 127;
    }
    signal(SIGPIPE, SIG_IGN);
    const Child child = start(program, linuxArguments(program), currentFolder());
    relayInput(child.input.writeEnd);
    const HANDLE output = relayOutput(child.output.readEnd, STD_OUTPUT_HANDLE);
    const HANDLE errors = relayOutput(child.errors.readEnd, STD_ERROR_HANDLE);
    int status = 0;
    while (waitpid(child.number, &status, 0) < 0 && errno == EINTR) {
    }
    finishRelay(output);
    finishRelay(errors);
    return exitStatus(child, status);
}

} // namespace
} // namespace bridge

// The thread that reads the input may wait for ever; it ends with the process.
int main()
{
    TerminateProcess(GetCurrentProcess(), bridge::run());
}
