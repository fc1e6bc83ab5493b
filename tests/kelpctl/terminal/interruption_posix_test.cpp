#include "terminal/interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using kelpctl::Interruption;

TEST(Interruption, IsRememberedUntilTheNextWork)
{
    {
        const Interruption interruption(Interruption::Meaning::endWork);
        EXPECT_FALSE(kelpctl::interrupted());
        std::raise(SIGINT);
        EXPECT_TRUE(kelpctl::interrupted());
    }
    EXPECT_TRUE(kelpctl::interrupted());
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

} // namespace
