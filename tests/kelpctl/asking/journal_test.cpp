#include "asking/journal.h"

#include "terminal/interruption.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::Ending;
using kelpctl::Interruption;
using kelpctl::RunJournal;
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

TEST(RunJournal, ForgetsWhatHasEndedAndKeepsWhatRuns)
{
    RunJournal journal;
    const RunResult result;
    start(journal, {"docker.exe", "version"});
    journal.ended({"docker.exe", "version"}, &result);
    start(journal, {"docker.exe", "load"});
    journal.forget();
    EXPECT_TRUE(journal.runs().empty());
    EXPECT_EQ(journal.current(), "docker.exe load");
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

TEST(RunJournal, TellsWhichProgramRunsAndWhatTheSystemCallsIt)
{
    RunJournal journal;
    EXPECT_FALSE(journal.running());
    const std::vector<std::string> load = {"docker.exe", "load", "-i", "x.tar"};
    const auto options = start(journal, load);
    ASSERT_TRUE(journal.running());
    EXPECT_EQ(journal.running()->number, 1U);
    EXPECT_EQ(journal.running()->arguments, load);
    EXPECT_FALSE(journal.running()->processId);
    options.startCallback()(4711, nullptr);
    EXPECT_EQ(journal.running()->processId, 4711U);
    const RunResult result;
    journal.ended(load, &result);
    EXPECT_FALSE(journal.running());
    start(journal, load);
    EXPECT_EQ(journal.running()->number, 2U);
}

TEST(RunJournal, EndsWhatRunsAndStartsNothingMoreWhenItGivesUp)
{
    RunJournal journal;
    const std::vector<std::string> load = {"docker.exe", "load", "-i", "x.tar"};
    start(journal, load);
    EXPECT_FALSE(journal.shouldTerminate());
    EXPECT_FALSE(journal.gaveUp());
    journal.giveUp();
    EXPECT_TRUE(journal.gaveUp());
    EXPECT_TRUE(journal.shouldTerminate());
    const RunResult result;
    journal.ended(load, &result);
    EXPECT_EQ(journal.runs().at(0).ending, Ending::timedOut);
    EXPECT_THROW(start(journal, load), kelpctl::Interrupted);
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

} // namespace
