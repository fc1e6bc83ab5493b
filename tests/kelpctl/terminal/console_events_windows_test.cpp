#include "terminal/windows/console_events.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace {

using kelpctl::answerAtWork;
using kelpctl::answerForProgram;
using kelpctl::EventAnswer;

constexpr DWORD typedEvents[] = {CTRL_C_EVENT, CTRL_BREAK_EVENT};
constexpr DWORD ends[] = {CTRL_CLOSE_EVENT, CTRL_LOGOFF_EVENT, CTRL_SHUTDOWN_EVENT};

TEST(ConsoleEvents, CtrlCEndsTheWorkTheFirstTimeAndKelpctlTheSecond)
{
    for (const DWORD event : typedEvents) {
        const EventAnswer first = answerAtWork(event, false);
        EXPECT_TRUE(first.handled);
        EXPECT_TRUE(first.interrupts);
        EXPECT_EQ(first.timeout.count(), 0);
        EXPECT_FALSE(answerAtWork(event, true).handled);
    }
}

TEST(ConsoleEvents, TheEndOfTheConsoleEndsTheWorkAndWaitsForItLessThanTheSystemWould)
{
    for (const DWORD event : ends) {
        for (const bool wasInterrupted : {false, true}) {
            const EventAnswer answer = answerAtWork(event, wasInterrupted);
            EXPECT_TRUE(answer.handled);
            EXPECT_TRUE(answer.interrupts);
            EXPECT_EQ(answer.timeout, std::chrono::seconds(4));
        }
    }
}

TEST(ConsoleEvents, TheProgramThatSharesTheConsoleIsLeftToItsOwnHandling)
{
    for (const DWORD event : typedEvents) {
        const EventAnswer answer = answerForProgram(event);
        EXPECT_TRUE(answer.handled);
        EXPECT_EQ(answer.timeout.count(), 0);
    }
    for (const DWORD event : ends) {
        EXPECT_FALSE(answerForProgram(event).handled);
    }
}

} // namespace
