#include "asking/journal.h"

#include "terminal/interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

TEST(RunJournal, InterruptionEndsTheRunAndKeepsTheNextFromStarting)
{
    kelpctl::RunJournal journal;
    journal.started({"a"});
    const kelpctl::Interruption interruption(kelpctl::Interruption::Meaning::endWork);
    EXPECT_FALSE(journal.endWanted());
    std::raise(SIGINT);
    EXPECT_TRUE(journal.endWanted());
    EXPECT_THROW(journal.started({"b"}), kelpctl::Interrupted);
}

} // namespace
