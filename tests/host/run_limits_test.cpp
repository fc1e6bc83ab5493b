// The limits of a run, on a clock that only the test moves.
#include "run_session.h"

#include <gtest/gtest.h>

namespace {

using namespace orb::process::detail;
using namespace std::chrono_literals;
using Clock = RunSession::Clock;

Clock::time_point now{24h};

Clock::time_point testNow()
{
    return now;
}

class RunLimits : public testing::Test {
protected:
    RunSession session() const { return RunSession(options, testNow); }

    // How long the streams of a program that has exited may be silent; the wait for them is as long.
    static Clock::duration silence(RunSession& session)
    {
        const Clock::time_point begin = now;
        const std::optional<std::chrono::milliseconds> wait = session.timeout();
        while (!session.streamsOverdue() && now < begin + 1min) {
            now += 10ms;
        }
        EXPECT_EQ(wait, now - begin);
        return now - begin;
    }

    static void print(RunSession& session, Stream stream)
    {
        session.buffer(stream).front() = 'x';
        session.commit(stream, 1);
    }

    RunOptions options;
};

TEST_F(RunLimits, StreamsMayBeSilentForFiveSecondsUnlessTheCallerSaysOtherwise)
{
    RunSession usual = session();
    usual.programExited();
    EXPECT_EQ(silence(usual), 5s);
    options.setStreamTimeout(770ms);
    RunSession other = session();
    other.programExited();
    EXPECT_EQ(silence(other), 770ms);
    options.setStreamTimeout(0ms);
    RunSession none = session();
    none.programExited();
    EXPECT_TRUE(none.streamsOverdue());
}

TEST_F(RunLimits, EachByteOnEitherStreamBeginsTheTimeAgain)
{
    for (const Stream stream : {Stream::output, Stream::error}) {
        RunSession run = session();
        run.programExited();
        now += 4900ms;
        print(run, stream);
        EXPECT_EQ(silence(run), 5s);
    }
}

TEST_F(RunLimits, HalfASecondIsLeftAfterAnEndOnRequest)
{
    options.setTerminationHandler([] { return true; });
    RunSession ended = session();
    now += 100ms;
    ASSERT_TRUE(ended.shouldTerminate());
    ended.programExited();
    EXPECT_EQ(silence(ended), 500ms);
    options.setStreamTimeout(200ms);
    RunSession hasty = session();
    now += 100ms;
    ASSERT_TRUE(hasty.shouldTerminate());
    hasty.programExited();
    EXPECT_EQ(silence(hasty), 200ms) << "half a second is the most";
}

TEST_F(RunLimits, AProgramThatRunsIsNeverOverdueAndWaitedForWithoutALimit)
{
    RunSession run = session();
    now += 24h;
    EXPECT_FALSE(run.streamsOverdue());
    EXPECT_EQ(run.timeout(), std::nullopt);
}

TEST_F(RunLimits, TheTerminationHandlerIsAskedTenTimesASecond)
{
    int asked = 0;
    options.setTerminationHandler([&asked] {
        ++asked;
        return false;
    });
    RunSession run = session();
    EXPECT_EQ(run.timeout(), 100ms);
    for (int step = 0; step < 1000; ++step) {
        now += 1ms;
        EXPECT_FALSE(run.shouldTerminate());
    }
    EXPECT_EQ(asked, 10);
    now += 1h;
    EXPECT_EQ(run.timeout(), 0ms) << "a question that is due does not wait";
}

TEST_F(RunLimits, AWaitWithALimitIsNoLongerThanADay)
{
    options.setStreamTimeout(std::chrono::milliseconds::max());
    RunSession run = session();
    run.programExited();
    EXPECT_EQ(run.timeout(), std::nullopt);
    now += 48h;
    EXPECT_FALSE(run.streamsOverdue());
    options.setStreamTimeout(60h);
    RunSession long_ = session();
    long_.programExited();
    EXPECT_EQ(long_.timeout(), 24h);
    now += 59h;
    EXPECT_EQ(long_.timeout(), 1h);
}

} // namespace
