#include "asking/journal.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::Ending;
using kelpctl::RunJournal;
using orb::process::detail::RunResult;
using testing::ElementsAre;

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
    EXPECT_FALSE(journal.runs().at(0).succeeded());
    EXPECT_EQ(journal.runs().at(0).ending, Ending::notStarted);
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
    EXPECT_EQ(journal.runs().at(0).ending, Ending::timedOut);
}

} // namespace
