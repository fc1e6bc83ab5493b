#include "asking/wsl.h"

#include "fake_programs.h"

#include <gmock/gmock.h>

namespace {

using namespace kelpctl;
using testing::IsEmpty;

TEST(AskWsl, DistributionsHaveTheirStates)
{
    FakePrograms fake;
    fake.answers["wsl --list -q"] = {0, "kelp_hub\r\nUbuntu\r\n", {}};
    fake.answers["wsl --list --all --verbose"] = {
        0, "  NAME        STATE           VERSION\r\n* kelp_hub    Running         2\r\n  Ubuntu  Stopped 1\r\n", {}};
    const DistributionList list = askDistributions(fake.programs, "wsl");
    EXPECT_TRUE(list.known());
    ASSERT_EQ(list.all.size(), 2U);
    EXPECT_EQ(list.all[0].name, "kelp_hub");
    EXPECT_EQ(list.all[0].state, "Running");
    EXPECT_EQ(list.all[0].version, 2);
    EXPECT_TRUE(list.all[0].isDefault);
    EXPECT_EQ(list.all[1].state, "Stopped");
    EXPECT_EQ(list.all[1].version, 1);
    EXPECT_FALSE(list.all[1].isDefault);
}

TEST(AskWsl, DistributionsWithoutATableHaveNoState)
{
    FakePrograms fake;
    fake.answers["wsl --list -q"] = {0, "kelp_hub\r\n", {}};
    const DistributionList list = askDistributions(fake.programs, "wsl");
    ASSERT_EQ(list.all.size(), 1U);
    EXPECT_EQ(list.all[0].name, "kelp_hub");
    EXPECT_EQ(list.all[0].state, "");
}

TEST(AskWsl, NoDistributionsIsNoFailure)
{
    FakePrograms fake;
    fake.answers["wsl --list -q"] = {0, {}, {}};
    const DistributionList list = askDistributions(fake.programs, "wsl");
    EXPECT_TRUE(list.known());
    EXPECT_THAT(list.all, IsEmpty());
}

TEST(AskWsl, FailedListingIsNotAnEmptyOne)
{
    FakePrograms fake;
    EXPECT_FALSE(askDistributions(fake.programs, "wsl").known());
}

TEST(DistributionTable, KnowsStatesThatAreYetToBeInvented)
{
    const std::vector<Distribution> all = distributionTable("* a Running 2\n  b Exporting 2\n  c Dreaming 1\n");
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[2].state, "Dreaming");
}

TEST(DistributionTable, TakesNoOtherLineForARow)
{
    EXPECT_THAT(distributionTable("  NAME  STATE  VERSION\n\nThere is none\n a b 22\n"), IsEmpty());
}

TEST(VersionNumber, IsFoundInAnyLanguage)
{
    EXPECT_EQ(versionNumber("WSL version: 2.3.24.0\nKernel version: 5.15.153.1-2\n"), "2.3.24.0");
    EXPECT_EQ(versionNumber("WSL-Version: 2.3.24.0"), "2.3.24.0");
    EXPECT_EQ(versionNumber("WSL2 \xE7\x89\x88\xE6\x9C\xAC\xEF\xBC\x9A 2.0.9"), "2.0.9");
    EXPECT_EQ(versionNumber("no number 1.2 ... 3."), "");
    EXPECT_EQ(versionNumber(""), "");
}

} // namespace
