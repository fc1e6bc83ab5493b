#include "asking/journal.h"

#include "terminal/interruption.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

using kelpctl::Ending;
using kelpctl::Interruption;
using kelpctl::RunJournal;
using kelpctl::runOf;
using kelpctl::shortCommand;
using kelpctl::tellingRun;
using orb::process::detail::RunResult;
using testing::ElementsAre;

// What the process service says when it is about to start a program.
orb::process::detail::RunOptions start(RunJournal& journal, const std::vector<std::string>& arguments)
{
    orb::process::detail::RunOptions options;
    journal.starting(arguments, options);
    return options;
}

TEST(RunJournal, KeepsWhatEveryPartOfTheProcessRuns)
{
    const RunJournal journal;
    orb::process::detail::run({"no-such-program-anywhere", "x"});
    ASSERT_EQ(journal.runs().size(), 1U);
    EXPECT_THAT(journal.runs()[0].arguments, ElementsAre("no-such-program-anywhere", "x"));
    EXPECT_EQ(journal.runs()[0].status, 127);
    EXPECT_EQ(journal.runs()[0].ending, Ending::exited);
}

TEST(RunJournal, TellsWhatIsBeingWaitedFor)
{
    RunJournal journal;
    EXPECT_EQ(journal.current(), "");
    start(journal, {"/usr/bin/docker.exe", "load", "-i", "x.tar"});
    EXPECT_EQ(journal.current(), "docker.exe load -i");
    const RunResult result;
    journal.ended({"/usr/bin/docker.exe", "load", "-i", "x.tar"}, &result);
    EXPECT_EQ(journal.current(), "");
}

TEST(RunJournal, EndsTheDockerClientWithAllThatItHasStarted)
{
    RunJournal journal;
    const Interruption interruption(Interruption::Meaning::endWork);
    EXPECT_TRUE(start(journal, {"/usr/bin/docker.exe", "version"}).terminatesTree());
}

TEST(RunJournal, LeavesTheDockerClientToTheTerminalWhereCtrlCEndsKelpctlItself)
{
    RunJournal journal;
    EXPECT_FALSE(start(journal, {"/usr/bin/docker.exe", "version"}).terminatesTree());
    const Interruption interruption(Interruption::Meaning::leaveToProgram);
    EXPECT_FALSE(start(journal, {"/usr/bin/docker.exe", "version"}).terminatesTree());
}

TEST(RunJournal, LeavesWhatWslHasStartedToItself)
{
    RunJournal journal;
    const Interruption interruption(Interruption::Meaning::endWork);
    EXPECT_FALSE(start(journal, {"/mnt/c/Windows/System32/wsl.exe", "--list", "-q"}).terminatesTree());
    EXPECT_FALSE(start(journal, {"where", "docker.exe"}).terminatesTree());
}

TEST(RunJournal, RunWithoutAResultHasFailed)
{
    RunJournal journal;
    start(journal, {"a"});
    journal.ended({"a"}, nullptr);
    EXPECT_FALSE(journal.runs().at(0).succeeded());
    EXPECT_EQ(journal.runs().at(0).ending, Ending::notStarted);
}

TEST(RunJournal, EndsARunThatTakesTooLong)
{
    RunJournal journal;
    start(journal, {"a"});
    EXPECT_FALSE(journal.shouldTerminate());
    journal.limitEachRun(std::chrono::milliseconds{0});
    EXPECT_FALSE(journal.shouldTerminate()) << "the limit is for runs that start later";
    start(journal, {"b"});
    EXPECT_TRUE(journal.shouldTerminate());
    const RunResult result{137, {}, {}};
    journal.ended({"b"}, &result);
    EXPECT_EQ(journal.runs().at(0).ending, Ending::timedOut);
}

#ifndef _WIN32
TEST(Interruption, EndsTheRunAndIsRemembered)
{
    RunJournal journal;
    start(journal, {"a"});
    {
        const Interruption interruption(Interruption::Meaning::endWork);
        EXPECT_FALSE(kelpctl::interrupted());
        std::raise(SIGINT);
        EXPECT_TRUE(kelpctl::interrupted());
        EXPECT_TRUE(journal.shouldTerminate());
        EXPECT_THROW(start(journal, {"b"}), kelpctl::Interrupted) << "nothing starts any more";
    }
    const Interruption next(Interruption::Meaning::endWork);
    EXPECT_FALSE(kelpctl::interrupted());
}

TEST(Interruption, SecondOneEndsTheProcess)
{
    EXPECT_EXIT(
        {
            const Interruption interruption(Interruption::Meaning::endWork);
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(Interruption, ProgramOnTheTerminalGetsItAlone)
{
    const Interruption interruption(Interruption::Meaning::leaveToProgram);
    std::raise(SIGINT);
    std::raise(SIGINT);
    std::raise(SIGQUIT);
    EXPECT_TRUE(kelpctl::interrupted());
}

TEST(Interruption, RequestToEndIsNotLeftToAProgramOnTheTerminal)
{
    EXPECT_EXIT(
        {
            const Interruption interruption(Interruption::Meaning::leaveToProgram);
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}
#endif

TEST(Run, TextIsReadableAndTheBytesAreKept)
{
    const kelpctl::Run run = runOf({"tool"}, {1, std::string("a\0b\0", 4), "why"});
    EXPECT_EQ(run.output, "ab");
    EXPECT_EQ(run.captured, std::string("a\0b\0", 4));
    EXPECT_EQ(run.error, "why");
    EXPECT_FALSE(run.succeeded());
}

TEST(TellingRun, IsTheLastThatFailed)
{
    EXPECT_FALSE(tellingRun({}).has_value());
    const kelpctl::Run good = runOf({"good"}, {0, {}, {}});
    const kelpctl::Run bad = runOf({"bad"}, {1, {}, {}});
    const kelpctl::Run worse = kelpctl::runThatDidNotStart({"worse"}, {});
    EXPECT_THAT(tellingRun({bad, worse, good})->arguments, ElementsAre("worse"));
    EXPECT_THAT(tellingRun({worse, bad, good})->arguments, ElementsAre("bad"));
    EXPECT_THAT(tellingRun({good, good})->arguments, ElementsAre("good"));
}

TEST(ShortCommand, NamesTheProgramAndWhatItDoes)
{
    EXPECT_EQ(shortCommand({"C:\\Windows\\System32\\wsl.exe", "--import", "hub", "x", "y"}), "wsl.exe --import hub");
    EXPECT_EQ(shortCommand({"where"}), "where");
    EXPECT_EQ(shortCommand({}), "");
}

} // namespace
