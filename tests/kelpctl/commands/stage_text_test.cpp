#include "commands/stage_text.h"

#include "terminal/json.h"
#include "terminal/progress.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;
using kelpctl::jsonLine;
using kelpctl::roughTime;
using kelpctl::shortSize;
using kelpctl::Signal;
using kelpctl::Stage;
using kelpctl::stageObject;
using kelpctl::stageText;
using kelpctl::State;

constexpr std::uint64_t mib = 1 << 20;

Stage stage(State state, Signal signal = Signal::disk, std::uint64_t sizeMib = 412)
{
    Stage made;
    made.state = state;
    made.signal = signal;
    made.bytes = sizeMib * mib;
    made.elapsed = 41s;
    return made;
}

Stage withTotal(Stage made, std::uint64_t sizeMib, int percent)
{
    made.total = sizeMib * mib;
    made.percent = percent;
    return made;
}

Stage quiet(Stage made, std::chrono::seconds time)
{
    made.quiet = time;
    return made;
}

TEST(StageText, SaysNothingOfWhatCannotBeSeen)
{
    EXPECT_EQ(stageText(Stage()), "");
}

TEST(StageText, OfEachState)
{
    EXPECT_EQ(stageText(stage(State::preparing)), "WSL prepares the disk");
    EXPECT_EQ(stageText(stage(State::growing)), "412 MiB unpacked");
    EXPECT_EQ(stageText(withTotal(stage(State::growing), 1130, 36)), "412 MiB of about 1.1 GiB (36 %)");
    EXPECT_EQ(stageText(withTotal(stage(State::growing, Signal::load), 1130, 36)), "412 MiB of 1.1 GiB sent (36 %)");
    EXPECT_EQ(stageText(quiet(withTotal(stage(State::growing), 1130, 36), 7s)),
              "412 MiB of about 1.1 GiB (36 %), quiet 7 s");
    EXPECT_EQ(stageText(quiet(stage(State::finishing), 35s)), "412 MiB unpacked, finishing 35 s");
    EXPECT_EQ(stageText(stage(State::sent, Signal::load)), "412 MiB sent, the engine unpacks");
    Stage low = stage(State::lowDisk);
    low.freeRoom = 800 * mib;
    EXPECT_EQ(stageText(low), "412 MiB unpacked, only 800 MiB left on the disk");
    EXPECT_EQ(stageText(quiet(stage(State::stalled), 130s)), "412 MiB unpacked, stalled 130 s");
    EXPECT_EQ(stageText(quiet(stage(State::stalled, Signal::disk, 0), 130s)), "WSL prepares the disk, stalled 130 s");
}

TEST(StageText, TimeThatIsLeftIsRoundedUp)
{
    Stage growing = withTotal(stage(State::growing), 1130, 36);
    growing.left = 62s;
    EXPECT_EQ(stageText(growing), "412 MiB of about 1.1 GiB (36 %), 70 s left");
    EXPECT_EQ(roughTime(0s), "0 s");
    EXPECT_EQ(roughTime(1s), "10 s");
    EXPECT_EQ(roughTime(120s), "120 s");
    EXPECT_EQ(roughTime(121s), "3 min");
    EXPECT_EQ(roughTime(3600s), "60 min");
}

TEST(StageText, SizesAreShort)
{
    EXPECT_EQ(shortSize(0), "0 KiB");
    EXPECT_EQ(shortSize(mib - 1), "1023 KiB");
    EXPECT_EQ(shortSize(mib), "1 MiB");
    EXPECT_EQ(shortSize(1024 * mib), "1.0 GiB");
    EXPECT_EQ(shortSize(1130 * mib), "1.1 GiB");
    EXPECT_EQ(shortSize(~std::uint64_t{0}), "17179869183.9 GiB");
}

// The longest of archives below 100 GiB.
TEST(StageText, FitsTheLineOfATerminal)
{
    const Stage growing = withTotal(stage(State::growing, Signal::disk, 1023), 99 * 1024 + 1000, 99);
    Stage known = growing;
    known.left = 120min;
    const std::string line = kelpctl::progressLine("kelpctl provision", stageText(known), 9999s);
    EXPECT_TRUE(line.ends_with(", 120 min left ... 9999 s")) << line;
    Stage stalled = quiet(growing, 9999s);
    stalled.state = State::stalled;
    const std::string longest = kelpctl::progressLine("kelpctl provision", stageText(stalled), 9999s);
    EXPECT_TRUE(longest.ends_with(", stalled 9999 s ... 9999 s")) << longest;
}

TEST(StageObject, HasAllThatIsKnown)
{
    Stage growing = quiet(withTotal(stage(State::growing), 1000, 41), 2s);
    growing.left = 60s;
    growing.freeRoom = 7;
    EXPECT_EQ(jsonLine(stageObject(growing, "wsl.exe --import hub")),
              R"({"progress":{"state":"growing","bytes":432013312,"of":1048576000,"percent":41,"secondsLeft":60,)"
              R"("freeRoom":7,"quietSeconds":2,"seconds":41,"command":"wsl.exe --import hub"}})");
}

TEST(StageObject, HasNullForWhatIsNot)
{
    EXPECT_EQ(jsonLine(stageObject(Stage(), "")),
              R"({"progress":{"state":"running","bytes":null,"of":null,"percent":null,"secondsLeft":null,)"
              R"("freeRoom":null,"quietSeconds":0,"seconds":0,"command":null}})");
}

TEST(StageObject, NamesEachState)
{
    const std::pair<State, const char*> names[] = {{State::running, "running"}, {State::preparing, "preparing"},
                                                   {State::growing, "growing"}, {State::finishing, "finishing"},
                                                   {State::sent, "sent"},       {State::lowDisk, "lowDisk"},
                                                   {State::stalled, "stalled"}};
    for (const auto& [state, name] : names) {
        EXPECT_EQ(stageObject(stage(state), "").at("progress").at("state"), name);
    }
}

} // namespace
