#include "child.h"

#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orb::process::detail {

int waitForEnd(pid_t id, int& status)
{
    while (::waitpid(id, &status, 0) < 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

namespace {

// Called by number: the C library's own declarations, where it has them, do not suit C++ everywhere.
int openProcess(pid_t id)
{
    return static_cast<int>(::syscall(SYS_pidfd_open, id, 0));
}

void sendKill(int process) noexcept
{
    ::syscall(SYS_pidfd_send_signal, process, SIGKILL, nullptr, 0);
}

} // namespace

// Nothing can fail once the program runs.
Child::Child(const StartRequest& request)
    : program_(request.arguments.front()),
      ownGroup_(request.ownGroup),
      id_(startProgram(request)),
      exitEvent_(openProcess(id_))
{
}

Child::~Child()
{
    if (!waited_) {
        kill();
        int status = 0;
        waitForEnd(id_, status);
    }
}

bool Child::hasExited() const
{
    siginfo_t information{};
    if (::waitid(P_PID, static_cast<id_t>(id_), &information, WEXITED | WNOHANG | WNOWAIT) == 0) {
        return information.si_pid == id_;
    }
    return errno == ECHILD;
}

void Child::kill() const noexcept
{
    if (ownGroup_) {
        killGroup();
    } else if (exitEvent_) {
        sendKill(exitEvent_.get());
    } else {
        ::kill(id_, SIGKILL);
    }
}

// As long as the program runs, or its end has not been taken note of, no other process and no other group gets its id. A
// host that lets the system forget ended programs has to do without: the group may be another's by now.
void Child::killGroup() const noexcept
{
    siginfo_t information{};
    if (::waitid(P_PID, static_cast<id_t>(id_), &information, WEXITED | WNOHANG | WNOWAIT) == 0) {
        ::kill(-id_, SIGKILL);
    }
}

ExitReport Child::wait()
{
    int status = 0;
    const int error = waitForEnd(id_, status);
    waited_ = true;
    if (error != 0) {
        throw std::system_error(error, std::system_category(), "cannot learn how '" + program_ + "' ended");
    }
    ExitReport report;
    if (WIFSIGNALED(status)) {
        constexpr int signalOffset = 128;
        report.signal = WTERMSIG(status);
        report.status = signalOffset + report.signal;
    } else {
        report.status = WEXITSTATUS(status);
    }
    return report;
}

} // namespace orb::process::detail
