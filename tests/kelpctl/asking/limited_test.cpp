#include "asking/limited.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>

namespace {

using kelpctl::within;
using std::chrono::milliseconds;
using std::chrono::minutes;

TEST(Within, GivesWhatTheProbeGives)
{
    EXPECT_EQ(within(minutes(1), [] { return 42; }), 42);
}

TEST(Within, ProbeThatFailsTellsNothing)
{
    EXPECT_EQ(within(minutes(1), []() -> int { throw std::runtime_error("no"); }), std::nullopt);
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
