// What the process service promises on POSIX systems only.
#include "current_folder.h"
#include "environment_variable.h"
#include "process_system.h"
#include "process_tree.h"
#include "refused_system_call.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <functional>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using orb::process::detail::ExitReport;
using orb::process::detail::run;
using orb::process::detail::runAttached;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using orb::process::detail::Stream;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

std::error_code failureOf(const std::vector<std::string>& arguments,
                          const orb::process::detail::Environment& environment = {})
{
    try {
        run(arguments, environment);
    } catch (const std::system_error& error) {
        return error.code();
    }
    return {};
}

fs::path writeFile(const fs::path& file, const std::string& text, fs::perms permissions)
{
    std::ofstream(file) << text;
    fs::permissions(file, permissions);
    return file;
}

// Whether the condition comes true within a while.
bool becomesTrue(const std::function<bool()>& condition)
{
    for (int turn = 0; turn < 1500 && !condition(); ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return condition();
}

// While it lives, the signal is handled so.
class SignalAction {
public:
    SignalAction(int signal, void (*handler)(int)) : signal_(signal)
    {
        struct sigaction action {};
        action.sa_handler = handler;
        ::sigaction(signal, &action, &before_);
    }
    ~SignalAction() { ::sigaction(signal_, &before_, nullptr); }
    SignalAction(const SignalAction&) = delete;
    SignalAction& operator=(const SignalAction&) = delete;

private:
    int signal_;
    struct sigaction before_ {};
};

// While it lives, this process has no standard streams.
class NoStandardStreams {
public:
    NoStandardStreams()
    {
        for (int stream = 0; stream < 3; ++stream) {
            before_[static_cast<std::size_t>(stream)] = ::fcntl(stream, F_DUPFD_CLOEXEC, 100);
            ::close(stream);
        }
    }
    ~NoStandardStreams()
    {
        for (int stream = 0; stream < 3; ++stream) {
            ::dup2(before_[static_cast<std::size_t>(stream)], stream);
            ::close(before_[static_cast<std::size_t>(stream)]);
        }
    }
    NoStandardStreams(const NoStandardStreams&) = delete;
    NoStandardStreams& operator=(const NoStandardStreams&) = delete;

private:
    std::array<int, 3> before_{};
};

bool isAnyStandardStreamAPipe()
{
    bool any = false;
    for (int stream = 0; stream < 3; ++stream) {
        struct stat status {};
        any = any || (::fstat(stream, &status) == 0 && S_ISFIFO(status.st_mode));
    }
    return any;
}

} // namespace

TEST(StartCallback, NamesTheProgramByItsProcessId)
{
    RunOptions options;
    std::uint32_t id = 0;
    options.setStartCallback([&id](std::uint32_t processId, void*) { id = processId; });
    const RunResult result = run({"/bin/sh", "-c", "echo $$"}, {}, {}, false, options);
    EXPECT_EQ(result.standardOutput, std::to_string(id) + "\n");
}

TEST(ProcessStatusPosix, OfAProgramKilledByASignalTellsTheSignal)
{
    RunOptions options;
    ExitReport report;
    options.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    EXPECT_EQ(run(child({"raise", std::to_string(SIGKILL)}), {}, {}, false, options).status, 128 + SIGKILL);
    EXPECT_EQ(report.signal, SIGKILL);
    EXPECT_FALSE(report.terminated);
    EXPECT_EQ(runAttached(child({"raise", std::to_string(SIGKILL)})), 128 + SIGKILL);
    EXPECT_EQ(run(child({"exit", std::to_string(128 + SIGKILL)}), {}, {}, false, options).status, 128 + SIGKILL);
    EXPECT_EQ(report.signal, 0);
}

TEST(ProcessStatusPosix, IsTheLowByteOfTheExitCode)
{
    EXPECT_EQ(run(child({"exit", "-1"})).status, 255);
    EXPECT_EQ(run(child({"exit", "259"})).status, 3);
}

TEST(ProcessStatusPosix, ThatTheSystemForgetsIsAnError)
{
    const SignalAction ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(failureOf(child({"print", "x", ""})).value(), ECHILD);
}

TEST(ProcessStartPosix, RefusesWhatCannotBeExecuted)
{
    const TemporaryFolder folder;
    const fs::path plain = writeFile(folder.path() / "plain", "text", fs::perms::owner_read);
    const fs::path noProgram = writeFile(folder.path() / "no-program", "text", fs::perms::owner_all);
    EXPECT_EQ(failureOf({plain.string()}).value(), EACCES);
    EXPECT_EQ(failureOf({folder.path().string()}).value(), EACCES);
    EXPECT_EQ(failureOf({noProgram.string()}).value(), ENOEXEC);
    EXPECT_EQ(failureOf(child({std::string(std::size_t{4} * 1024 * 1024, 'x')})).value(), E2BIG);
}

TEST(ProcessStartPosix, ReportsAProgramBelowAFileAsMissing)
{
    const TemporaryFolder folder;
    const fs::path file = writeFile(folder.path() / "file", "text", fs::perms::owner_all);
    EXPECT_EQ(run({(file / "program").string()}).status, 127);
}

TEST(ProcessStartPosix, RunsAScriptWithAnInterpreterLine)
{
    const TemporaryFolder folder;
    const fs::path script = writeFile(folder.path() / "script", "#!/bin/sh\necho \"$1\"\n", fs::perms::owner_all);
    EXPECT_EQ(run({script.string(), "a  b"}).standardOutput, "a  b\n");
}

TEST(ProgramSearchPosix, GoesOnAfterAnEntryThatMayNotBeRunAndReportsItLast)
{
    const TemporaryFolder forbidden;
    const TemporaryFolder allowed;
    writeFile(forbidden.path() / "probe_twin", "text", fs::perms::owner_read);
    fs::create_directory(forbidden.path() / "probe_folder");
    const std::string first = forbidden.path().string();
    EXPECT_EQ(failureOf({"probe_twin"}, {{"PATH", first + ":" + allowed.path().string()}}).value(), EACCES);
    EXPECT_EQ(failureOf({"probe_folder"}, {{"PATH", first}}).value(), EACCES);
    plantChild(allowed.path(), "probe_twin");
    const std::string both = first + ":" + allowed.path().string();
    EXPECT_EQ(run({"probe_twin", "print", "found", ""}, {{"PATH", both}}).standardOutput, "found");
}

TEST(ProgramSearchPosix, FindsNothingWithoutAPath)
{
    const EnvironmentVariable none("PATH");
    EXPECT_EQ(run({"sh", "-c", "exit"}).status, 127);
}

TEST(WorkingFolderPosix, OfADriveDesignatorIsTheCallers)
{
    EXPECT_TRUE(fs::equivalent(run(child({"folder"}), {}, "c:").standardOutput, fs::current_path()));
    EXPECT_TRUE(fs::equivalent(run(child({"folder"}), {}, "Z:").standardOutput, fs::current_path()));
}

TEST(WorkingFolderPosix, ThatOnlyLooksLikeADriveDesignatorIsAFolder)
{
    const TemporaryFolder folder;
    const CurrentFolder current(folder.path());
    for (const std::string name : {"ab", "1:", "{:"}) {
        fs::create_directory(name);
        EXPECT_TRUE(fs::equivalent(run(child({"folder"}), {}, name).standardOutput, folder.path() / name)) << name;
    }
}

TEST(ProcessEnvironmentPosix, TellsNamesApartByCase)
{
    const EnvironmentVariable inherited("PROCESS_TEST_VARIABLE", "upper");
    EXPECT_EQ(run(child({"variables", "PROCESS_TEST_VARIABLE", "process_test_variable"}),
                  {{"process_test_variable", "lower"}})
                  .standardOutput,
              "upper\nlower\n");
}

TEST(ProcessHandlesPosix, AreTheThreeStreamsAlone)
{
    const TemporaryFolder folder;
    const ForeignFile file(folder.path());
    EXPECT_EQ(run(child({"descriptors"})).standardOutput, "0 1 2 ");
}

TEST(ProcessHandlesPosix, AreRightAlsoWhenTheCallerHasNoStandardStreams)
{
    RunResult result;
    RunResult descriptors;
    std::int32_t attached = -1;
    RunOptions options;
    bool asked = false;
    bool pipeInPlace = false;
    options.setInputHandler([&]() -> std::string { return std::exchange(asked, true) ? "" : "input"; });
    {
        const NoStandardStreams none;
        result = run(child({"flood", "200000", "100000"}));
        descriptors = run(child({"descriptors"}));
        attached = runAttached(child({"print", "nowhere", "nowhere"}));
        options.setOutputLogger(
            [&](Stream, std::string_view) { pipeInPlace = pipeInPlace || isAnyStandardStreamAPipe(); });
        const RunResult fed = run(child({"copy-input"}), {}, {}, false, options);
        result.standardError += fed.standardOutput;
    }
    EXPECT_EQ(result.standardOutput, std::string(200000, 'o'));
    EXPECT_EQ(result.standardError, std::string(100000, 'e') + "input(end)");
    EXPECT_EQ(descriptors.standardOutput, "0 1 2 ");
    EXPECT_EQ(attached, 0);
    EXPECT_FALSE(pipeInPlace) << "what the host prints would go into a pipe";
}

TEST(ProcessHandlesPosix, ThatTheSystemRefusesWithoutStandardStreamsAreNamed)
{
    std::string failure;
    {
        const NoStandardStreams none;
        failure = failureWithout({SYS_fcntl, EMFILE, {{1, F_DUPFD_CLOEXEC}}}, [] { run(child({"exit", "0"})); });
    }
    EXPECT_THAT(failure, HasSubstr("cannot duplicate a pipe"));
}

TEST(ProcessSignalsPosix, AreNeitherBlockedNorIgnoredInTheProgram)
{
    const SignalAction ignoredPipe(SIGPIPE, SIG_IGN);
    const SignalAction ignoredInterrupt(SIGINT, SIG_IGN);
    sigset_t some;
    ::sigemptyset(&some);
    ::sigaddset(&some, SIGUSR1);
    ::sigaddset(&some, SIGTERM);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &some, &before);
    const RunResult result = run(child({"signals"}));
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.status, 0);
}

TEST(ProcessSignalsPosix, ThatInterruptTheWaitDoNoHarm)
{
    const SignalAction handled(SIGUSR1, [](int) {});
    const pthread_t runner = ::pthread_self();
    std::atomic<bool> done = false;
    std::thread interrupter([&] {
        while (!done) {
            ::pthread_kill(runner, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        }
    });
    const RunResult result = run(child({"dots", "100", "5"}));
    const std::int32_t attached = runAttached(child({"sleep", "200"}));
    done = true;
    interrupter.join();
    EXPECT_EQ(result.standardOutput, ".....");
    EXPECT_EQ(attached, 0);
}

TEST(DetachedRunPosix, LeavesNoZombie)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "id";
    run({"sh", "-c", "echo $$ > new && mv new id"}, {}, folder.path().string(), true);
    int id = 0;
    EXPECT_TRUE(becomesTrue([&] { return (std::ifstream(file) >> id).good(); }));
    // The system knows the id of a zombie.
    EXPECT_TRUE(becomesTrue([&] { return ::kill(id, 0) != 0 && errno == ESRCH; })) << id;
}

TEST(ProcessTreePosix, IsASessionWithoutATerminal)
{
    RunOptions options;
    EXPECT_EQ(run(child({"session"}), {}, {}, false, options).standardOutput.find("session"), std::string::npos);
    options.setTerminatesTree(true);
    EXPECT_EQ(run(child({"session"}), {}, {}, false, options).standardOutput, "session group ");
}

TEST(ProcessTreePosix, IsLeftByAProgramThatMakesASessionOfItsOwn)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    last.endOnceItIsThere({"keep-company", "leave-session"}, options);
    EXPECT_TRUE(last.report().terminated);
    EXPECT_TRUE(last.answersWithin(Descendant::patient));
}

TEST(ProcessTreePosix, IsNotEndedOnceTheSystemHasForgottenTheProgramSinceItsIdMayBeAnothers)
{
    const SignalAction ignored(SIGCHLD, SIG_IGN);
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    bool wanted = false;
    // The program ends as soon as it has started the other.
    options.setTerminationHandler([&, asked = 0]() mutable { return wanted = last.isThere() && ++asked > 5; });
    EXPECT_THROW(last.runWith({"leave-behind"}, options), std::system_error);
    EXPECT_TRUE(wanted);
    EXPECT_TRUE(last.answersWithin(Descendant::patient));
}
