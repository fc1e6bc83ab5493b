#include "runs.h"

#include "interruption.h"

#include <gmock/gmock.h>

#include <csignal>

namespace {

using kelpctl::Interruption;
using kelpctl::RunJournal;
using kelpctl::shortCommand;
using kelpctl::tellingRun;
using orb::process::detail::RunResult;
using testing::ElementsAre;

TEST(RunJournal, KeepsWhatEveryPartOfTheProcessRuns)
{
    const RunJournal journal;
    orb::process::detail::run({"no-such-program-anywhere", "x"});
    ASSERT_EQ(journal.runs().size(), 1U);
    EXPECT_THAT(journal.runs()[0].arguments, ElementsAre("no-such-program-anywhere", "x"));
    EXPECT_EQ(journal.runs()[0].result->status, 127);
    EXPECT_FALSE(journal.runs()[0].timedOut);
}

TEST(RunJournal, TellsWhatIsBeingWaitedFor)
{
    RunJournal journal;
    EXPECT_EQ(journal.current(), "");
    journal.started({"/usr/bin/docker.exe", "load", "-i", "x.tar"});
    EXPECT_EQ(journal.current(), "docker.exe load -i");
    const RunResult result;
    journal.ended({"/usr/bin/docker.exe", "load", "-i", "x.tar"}, &result);
    EXPECT_EQ(journal.current(), "");
}

TEST(RunJournal, RunWithoutAResultHasFailed)
{
    RunJournal journal;
    journal.started({"a"});
    journal.ended({"a"}, nullptr);
    EXPECT_TRUE(journal.runs().at(0).failed());
    EXPECT_FALSE(journal.runs().at(0).result.has_value());
}

TEST(RunJournal, EndsARunThatTakesTooLong)
{
    RunJournal journal;
    journal.started({"a"});
    EXPECT_FALSE(journal.endWanted());
    journal.limitEachRun(std::chrono::milliseconds{0});
    EXPECT_FALSE(journal.endWanted()) << "the limit is for runs that start later";
    journal.started({"b"});
    EXPECT_TRUE(journal.endWanted());
    const RunResult result{137, {}, {}};
    journal.ended({"b"}, &result);
    EXPECT_TRUE(journal.runs().at(0).timedOut);
}

#ifndef _WIN32
TEST(Interruption, EndsTheRunAndIsRemembered)
{
    RunJournal journal;
    journal.started({"a"});
    {
        const Interruption interruption(Interruption::Meaning::endWork);
        EXPECT_FALSE(kelpctl::interrupted());
        std::raise(SIGINT);
        EXPECT_TRUE(kelpctl::interrupted());
        EXPECT_TRUE(journal.endWanted());
        EXPECT_THROW(journal.started({"b"}), kelpctl::Interrupted) << "nothing starts any more";
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

TEST(TellingRun, IsTheLastThatFailed)
{
    EXPECT_FALSE(tellingRun({}).has_value());
    const kelpctl::Run good{{"good"}, RunResult{0, {}, {}}, false};
    const kelpctl::Run bad{{"bad"}, RunResult{1, {}, {}}, false};
    const kelpctl::Run worse{{"worse"}, std::nullopt, false};
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
