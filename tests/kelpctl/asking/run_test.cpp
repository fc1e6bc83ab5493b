#include "asking/run.h"

#include "fake_programs.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::decisiveRun;
using kelpctl::runOf;
using kelpctl::shortCommand;
using testing::ElementsAre;

TEST(Programs, ProgramThatCannotBeStartedHasNoStatus)
{
    FakePrograms fake;
    const kelpctl::Run answer = kelpctl::ask(fake.programs, {"broken"});
    EXPECT_FALSE(answer.status.has_value());
    EXPECT_FALSE(answer.succeeded());
    EXPECT_EQ(answer.error, "cannot start");
}

TEST(Programs, WslIsAskedForPlainText)
{
    FakePrograms fake;
    kelpctl::ask(fake.programs, {"wsl.exe"});
    EXPECT_EQ(fake.environment.at("WSL_UTF8"), "1");
    EXPECT_EQ(fake.environment.at("WSL_DISABLE_WARNINGS"), "1");
}

TEST(Run, TextIsReadableAndTheBytesAreKept)
{
    const kelpctl::Run run = runOf({"tool"}, {1, std::string("a\0b\0", 4), "why"});
    EXPECT_EQ(run.output, "ab");
    EXPECT_EQ(run.captured, std::string("a\0b\0", 4));
    EXPECT_EQ(run.error, "why");
    EXPECT_FALSE(run.succeeded());
}

TEST(DecisiveRun, IsTheLastThatFailed)
{
    EXPECT_FALSE(decisiveRun({}).has_value());
    const kelpctl::Run good = runOf({"good"}, {0, {}, {}});
    const kelpctl::Run bad = runOf({"bad"}, {1, {}, {}});
    const kelpctl::Run worse = kelpctl::runThatDidNotStart({"worse"}, {});
    EXPECT_THAT(decisiveRun({bad, worse, good})->arguments, ElementsAre("worse"));
    EXPECT_THAT(decisiveRun({worse, bad, good})->arguments, ElementsAre("bad"));
    EXPECT_THAT(decisiveRun({good, good})->arguments, ElementsAre("good"));
}

TEST(ShortCommand, NamesTheProgramAndWhatItDoes)
{
    EXPECT_EQ(shortCommand({"C:\\Windows\\System32\\wsl.exe", "--import", "hub", "x", "y"}), "wsl.exe --import hub");
    EXPECT_EQ(shortCommand({"where"}), "where");
    EXPECT_EQ(shortCommand({}), "");
}

} // namespace
