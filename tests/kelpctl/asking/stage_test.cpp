#include "asking/stage.h"

#include "generator.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using kelpctl::Expectation;
using kelpctl::Sample;
using kelpctl::Signal;
using kelpctl::Stage;
using kelpctl::stageOf;
using kelpctl::State;

constexpr std::uint64_t mib = 1 << 20;

// One sample a second, in MiB; a negative number stands for nothing to see.
std::vector<Sample> seconds(const std::vector<int>& sizes)
{
    std::vector<Sample> samples;
    for (const int size : sizes) {
        Sample sample;
        sample.at = 1s * (samples.size() + 1);
        if (size >= 0) {
            sample.bytes = static_cast<std::uint64_t>(size) * mib;
        }
        samples.push_back(sample);
    }
    return samples;
}

// So many MiB a second, then that number for as long.
std::vector<Sample> grownThenQuiet(int mibASecond, int growing, int quiet)
{
    std::vector<int> sizes;
    for (int second = 1; second <= growing; ++second) {
        sizes.push_back(mibASecond * second);
    }
    sizes.insert(sizes.end(), static_cast<std::size_t>(quiet), mibASecond * growing);
    return seconds(sizes);
}

Expectation expecting(Signal signal, int totalMib = 0)
{
    Expectation expected;
    expected.signal = signal;
    if (totalMib > 0) {
        expected.total = static_cast<std::uint64_t>(totalMib) * mib;
    }
    return expected;
}

Stage diskStage(const std::vector<Sample>& samples, int totalMib = 0)
{
    return stageOf(samples, expecting(Signal::disk, totalMib));
}

TEST(Stage, OfNothingSeenIsThatItRuns)
{
    EXPECT_EQ(stageOf({}, expecting(Signal::disk)).state, State::running);
    EXPECT_EQ(stageOf(seconds({-1, -1}), expecting(Signal::none)).state, State::running);
}

TEST(Stage, PreparesUntilTheDiskHasAnything)
{
    EXPECT_EQ(diskStage(seconds({-1, -1, -1})).state, State::preparing);
    EXPECT_EQ(diskStage(seconds({-1, 0, 0})).state, State::preparing);
    EXPECT_EQ(diskStage(seconds({-1, 0, 4})).state, State::growing);
}

TEST(Stage, DiskThatNeverComesIsStalledInTheEnd)
{
    const std::vector<int> nothing(120, -1);
    EXPECT_EQ(diskStage(seconds(nothing)).state, State::preparing);
    EXPECT_EQ(diskStage(seconds(std::vector<int>(121, -1))).state, State::stalled);
}

TEST(Stage, BurstIsGrowth)
{
    std::vector<int> sizes(100, -1);
    sizes.push_back(900);
    const Stage stage = diskStage(seconds(sizes), 1000);
    EXPECT_EQ(stage.state, State::growing);
    EXPECT_EQ(stage.percent, 90);
    EXPECT_EQ(stage.left, std::nullopt) << "nothing is known of its speed";
}

struct Pause {
    int quiet;
    int total;
    State state;
};

void PrintTo(const Pause& pause, std::ostream* stream)
{
    *stream << pause.quiet << " s of quiet at 400 of " << pause.total << " MiB";
}

class Pauses : public testing::TestWithParam<Pause> {};

TEST_P(Pauses, MeanWhatTheTotalLetsThemMean)
{
    const auto& [quiet, total, state] = GetParam();
    EXPECT_EQ(diskStage(grownThenQuiet(10, 40, quiet), total).state, state);
}

INSTANTIATE_TEST_SUITE_P(Stage, Pauses,
                         testing::Values(Pause{4, 0, State::growing}, Pause{5, 0, State::finishing},
                                         Pause{119, 0, State::finishing}, Pause{120, 0, State::stalled},
                                         Pause{4, 410, State::growing}, Pause{5, 410, State::finishing},
                                         // Known not to be the end.
                                         Pause{5, 1000, State::growing}, Pause{119, 1000, State::growing},
                                         Pause{120, 1000, State::stalled},
                                         // The last tenth may be left out of the disk.
                                         Pause{5, 444, State::finishing}, Pause{5, 450, State::growing},
                                         // Outgrown, so the total was another one.
                                         Pause{5, 300, State::finishing}));

TEST(Stage, TheUsersLimitTakesThePlaceOfAllOthers)
{
    Expectation expected = expecting(Signal::disk);
    expected.stallLimit = 7s;
    EXPECT_EQ(stageOf(grownThenQuiet(1, 10, 6), expected).state, State::finishing);
    EXPECT_EQ(stageOf(grownThenQuiet(1, 10, 7), expected).state, State::stalled);
    expected.signal = Signal::load;
    expected.total = 10 * mib;
    EXPECT_EQ(stageOf(grownThenQuiet(1, 10, 6), expected).state, State::sent);
    EXPECT_EQ(stageOf(grownThenQuiet(1, 10, 7), expected).state, State::stalled);
}

TEST(Stage, WorkThatMovesAgainHasNotStalled)
{
    std::vector<Sample> samples = grownThenQuiet(1, 10, 200);
    EXPECT_EQ(diskStage(samples).state, State::stalled);
    samples.push_back({samples.back().at + 1s, *samples.back().bytes + 1, {}});
    EXPECT_EQ(diskStage(samples).state, State::growing);
    EXPECT_EQ(diskStage(samples).quiet, 0s);
}

TEST(Stage, SleepOfTheComputerIsNoStall)
{
    std::vector<Sample> samples = grownThenQuiet(1, 10, 3);
    samples.push_back({samples.back().at + 8h, samples.back().bytes, {}});
    EXPECT_EQ(diskStage(samples).quiet, 8s);
    EXPECT_EQ(diskStage(samples).state, State::finishing);
}

TEST(Stage, TellsOfADiskThatIsNearlyFull)
{
    std::vector<Sample> samples = seconds({-1});
    samples.back().freeRoom = kelpctl::lowDiskBytes - 1;
    EXPECT_EQ(diskStage(samples).state, State::lowDisk);
    samples.back().freeRoom = kelpctl::lowDiskBytes;
    EXPECT_EQ(diskStage(samples).state, State::preparing);
    samples = grownThenQuiet(1, 10, 120);
    samples.back().freeRoom = 0;
    EXPECT_EQ(diskStage(samples).state, State::stalled) << "the graver one";
}

TEST(Stage, ArchiveThatIsReadIsSent)
{
    for (const Signal signal : {Signal::load, Signal::import}) {
        const Expectation expected = expecting(signal, 100);
        EXPECT_EQ(stageOf(seconds({0, 99}), expected).state, State::growing);
        const Stage sent = stageOf(seconds({0, 100}), expected);
        EXPECT_EQ(sent.state, State::sent);
        EXPECT_EQ(sent.percent, 99);
        EXPECT_EQ(sent.left, std::nullopt);
        EXPECT_EQ(stageOf(grownThenQuiet(10, 10, 599), expected).state, State::sent) << "the engine takes its time";
        EXPECT_EQ(stageOf(grownThenQuiet(10, 10, 600), expected).state, State::stalled);
        EXPECT_EQ(stageOf(grownThenQuiet(9, 10, 120), expected).state, State::stalled) << "it should be reading";
    }
}

TEST(Stage, ClientThatCannotBeSeenReadingIsNotStalled)
{
    const Expectation expected = expecting(Signal::load, 100);
    EXPECT_EQ(stageOf(seconds(std::vector<int>(1000, 0)), expected).state, State::running);
    EXPECT_EQ(stageOf(seconds(std::vector<int>(1000, -1)), expected).state, State::running);
}

TEST(Stage, NoPercentWithoutATotal)
{
    EXPECT_EQ(diskStage(grownThenQuiet(10, 40, 0)).percent, std::nullopt);
    EXPECT_EQ(diskStage(seconds({-1}), 100).percent, std::nullopt);
    EXPECT_EQ(diskStage(seconds({101}), 100).percent, std::nullopt);
    EXPECT_EQ(diskStage(seconds({100}), 100).percent, 99);
    EXPECT_EQ(diskStage(seconds({1}), 1000).percent, 0);
}

TEST(Stage, SizesOfAnyLengthHaveAPercent)
{
    Expectation expected = expecting(Signal::disk);
    expected.total = ~std::uint64_t{0};
    const std::vector<Sample> samples = {{1s, *expected.total / 2, {}}};
    EXPECT_EQ(stageOf(samples, expected).percent, 50);
}

TEST(Stage, TimeThatIsLeftIsKnownOfSteadyWork)
{
    const Stage stage = diskStage(grownThenQuiet(10, 40, 0), 1000);
    EXPECT_EQ(stage.percent, 40);
    EXPECT_EQ(stage.left, 60s);
}

TEST(Stage, NoTimeIsLeftThatIsNotKnown)
{
    EXPECT_EQ(diskStage(grownThenQuiet(10, 10, 0), 1000).left, std::nullopt) << "nine seconds";
    EXPECT_EQ(diskStage(grownThenQuiet(1, 40, 0), 1000).left, std::nullopt) << "four per cent";
    EXPECT_EQ(diskStage(grownThenQuiet(10, 40, 5), 1000).left, std::nullopt) << "it pauses";
    EXPECT_EQ(diskStage(grownThenQuiet(10, 40, 0)).left, std::nullopt) << "no total";
    EXPECT_EQ(stageOf(grownThenQuiet(10, 40, 0), expecting(Signal::load, 1000)).left, std::nullopt)
        << "the engine has more to do than to receive";
    EXPECT_EQ(stageOf(grownThenQuiet(10, 40, 0), expecting(Signal::import, 1000)).left, 60s);
    std::vector<int> faster;
    for (int second = 1; second <= 40; ++second) {
        faster.push_back(second < 20 ? second : 20 + (second - 20) * 10);
    }
    EXPECT_EQ(diskStage(seconds(faster), 1000).left, std::nullopt) << "not steady";
}

// Whatever comes: nothing is told that is not known.
TEST(Stage, HoldsWhatItPromisesForAnyCourse)
{
    Generator generator(20261122);
    for (int round = 0; round < 2000; ++round) {
        std::vector<Sample> samples;
        Sample sample;
        for (std::size_t count = generator.below(60) + 1; count > 0; --count) {
            sample.at += std::chrono::milliseconds(generator.below(20000));
            if (generator.below(3) > 0) {
                sample.bytes = sample.bytes.value_or(0) + generator.below(50) * mib;
            }
            if (generator.below(4) == 0) {
                sample.freeRoom = generator.below(4096) * mib;
            }
            samples.push_back(sample);
        }
        Expectation expected =
            expecting(static_cast<Signal>(generator.below(4)), static_cast<int>(generator.below(900)));
        const Stage stage = stageOf(samples, expected);
        EXPECT_EQ(stage.bytes, samples.back().bytes);
        EXPECT_TRUE(!stage.percent || (expected.total && *stage.percent >= 0 && *stage.percent <= 99));
        EXPECT_TRUE(!stage.left || (stage.percent && stage.left >= 0s && stage.signal != Signal::load));
        EXPECT_LE(stage.quiet, samples.back().at);
        EXPECT_TRUE(stage.state != State::stalled || stage.quiet >= 120s);
        EXPECT_TRUE(stage.state != State::sent || *stage.bytes >= *expected.total);
        EXPECT_EQ(stage.signal == Signal::none, stage.state == State::running && stage.signal == Signal::none);
    }
}

} // namespace
