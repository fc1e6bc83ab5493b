#include "asking/limited.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using kelpctl::within;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

TEST(Within, GivesWhatTheProbeGives)
{
    EXPECT_EQ(within(minutes(1), [] { return 42; }), 42);
}

TEST(Within, ProbeThatFailsTellsNothing)
{
    EXPECT_EQ(within(minutes(1), []() -> int { throw std::runtime_error("no"); }), std::nullopt);
}

// Threads that end at once, from several threads.
TEST(Within, EachProbeIsAnsweredHoweverManyThereAre)
{
    std::atomic<int> answered = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&answered] {
            for (int turn = 0; turn < 200 && within(seconds(20), [] { return 42; }); ++turn) {
                ++answered;
            }
        });
    }
    for (std::thread& each : threads) {
        each.join();
    }
    EXPECT_EQ(answered, 800);
}

TEST(Within, DoesNotWaitForAProbeThatHangs)
{
    auto end = std::make_shared<std::promise<void>>();
    const auto hang = [ended = std::make_shared<std::future<void>>(end->get_future())] {
        ended->wait();
        return 42;
    };
    EXPECT_EQ(within(milliseconds(20), hang), std::nullopt);
    end->set_value();
}

} // namespace
