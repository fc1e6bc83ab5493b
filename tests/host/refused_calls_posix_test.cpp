// What the host services do when the system refuses what they cannot do without: a clear error, and nothing left over.
#include "process_system.h"
#include "refused_system_call.h"

#include "host/files.h"
#include "host/network.h"
#include "host/process.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <csignal>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using orb::process::detail::ExitReport;
using orb::process::detail::run;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using testing::HasSubstr;

namespace {

class RefusedCalls : public testing::Test {
protected:
    RefusedCalls()
    {
        options.setInputHandler([] { return std::string("input"); });
    }
    ~RefusedCalls() override
    {
        EXPECT_EQ(openHandles(), handles_);
        EXPECT_TRUE(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD) << "a program was left";
    }

    // How a run ends that is fed and prints, on a system that refuses the call.
    std::string failureOfRun(const RefusedSystemCall& call) const
    {
        return failureWithout(call, [this] { run(child({"copy-input"}), {}, {}, false, options); });
    }

    RunOptions options;

private:
    std::size_t handles_ = openHandles();
};

TEST_F(RefusedCalls, PipesAreNamed)
{
    EXPECT_THAT(failureOfRun({SYS_pipe2, EMFILE, {{1, O_CLOEXEC}}}), HasSubstr("cannot create a pipe"));
}

TEST_F(RefusedCalls, WaitingIsNamed)
{
    EXPECT_THAT(failureOfRun({SYS_poll, ENOMEM, {}}), HasSubstr("cannot wait for a program"));
}

TEST_F(RefusedCalls, ReadingIsNamed)
{
    EXPECT_THAT(failureOfRun({SYS_read, EIO, {}}), HasSubstr("cannot read what a program prints"));
}

TEST_F(RefusedCalls, FeedingIsNamed)
{
    EXPECT_THAT(failureOfRun({SYS_eventfd2, EMFILE, {}}), HasSubstr("cannot prepare a pipe"));
    EXPECT_THAT(failureOfRun({SYS_fcntl, EINVAL, {{1, F_SETFL}}}), HasSubstr("cannot prepare a pipe"));
    EXPECT_THAT(failureOfRun({SYS_write, EIO, {}}), HasSubstr("cannot write to a program"));
}

TEST_F(RefusedCalls, RandomBitsAreNamed)
{
    EXPECT_THAT(failureWithout({SYS_getrandom, ENOSYS, {}}, [] { foundation::core::path::tmpnam(u"/tmp", {}, {}); }),
                HasSubstr("getrandom"));
}

TEST_F(RefusedCalls, NetworkInterfacesAreNamed)
{
    EXPECT_THAT(failureWithout({SYS_socket, EACCES, {}}, [] { foundation::core::net::NetworkInterface::list(); }),
                HasSubstr("getifaddrs"));
}

// An old kernel, or a sandbox.
TEST_F(RefusedCalls, DescriptorsForProcessesAreNotNeeded)
{
    RunResult result;
    ExitReport report;
    RunOptions patient;
    patient.setStreamTimeout(std::chrono::milliseconds{200});
    patient.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    const auto begin = std::chrono::steady_clock::now();
    const std::string failure = failureWithout({SYS_pidfd_open, ENOSYS, {}}, [&] {
        result = run(child({"leave-behind", "sleep", "8000"}), {}, {}, false, patient);
        patient.setTerminationHandler([] { return true; });
        run(child({"sleep", "8000"}), {}, {}, false, patient);
    });
    EXPECT_EQ(failure, "none");
    EXPECT_EQ(result.standardOutput, "parent");
    EXPECT_TRUE(report.terminated);
    EXPECT_THAT(std::chrono::steady_clock::now() - begin, testing::Lt(std::chrono::seconds{6}));
}

TEST_F(RefusedCalls, AProgramThatTheSystemForgetsIsAnErrorThereToo)
{
    void (*const before)(int) = ::signal(SIGCHLD, SIG_IGN);
    const std::string failure = failureWithout({SYS_pidfd_open, ENOSYS, {}}, [] { run(child({"exit", "0"})); });
    ::signal(SIGCHLD, before);
    EXPECT_THAT(failure, HasSubstr("cannot learn how"));
}

} // namespace
