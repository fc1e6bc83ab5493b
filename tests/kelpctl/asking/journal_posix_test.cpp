#include "asking/journal.h"

#include "terminal/interruption.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

TEST(RunJournal, InterruptionEndsTheRunAndKeepsTheNextFromStarting)
{
    kelpctl::RunJournal journal;
    orb::process::detail::RunOptions options;
    journal.starting({"a"}, options);
    const kelpctl::Interruption interruption(kelpctl::Interruption::Meaning::endWork);
    EXPECT_FALSE(journal.shouldTerminate());
    std::raise(SIGINT);
    EXPECT_TRUE(journal.shouldTerminate());
    EXPECT_THROW(journal.starting({"b"}, options), kelpctl::Interrupted);
}

} // namespace
