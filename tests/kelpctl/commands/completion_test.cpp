#include "commands/completion.h"

#include "commands/commands.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> completions(const std::vector<std::string>& words)
{
    return kelpctl::completions(words, kelpctl::allCommands(), kelpctl::globalOptions());
}

TEST(Completion, OffersCommands)
{
    EXPECT_THAT(completions({""}), Contains("setup"));
    EXPECT_THAT(completions({"st"}), ElementsAre("start", "stop"));
    EXPECT_THAT(completions({"--docker", "st"}), ElementsAre("start", "stop"));
    EXPECT_THAT(completions({"--release", "start", "st"}), ElementsAre("start", "stop"));
}

TEST(Completion, DoesNotOfferWhatNobodyTypes)
{
    EXPECT_THAT(completions({"comp"}), ElementsAre("completion"));
}

TEST(Completion, OffersFlagsOfTheCommandAndOfAll)
{
    EXPECT_THAT(completions({"--roo"}), ElementsAre("--root"));
    EXPECT_THAT(completions({"provision", "--ro"}), ElementsAre("--root", "--root-fs"));
    EXPECT_THAT(completions({"setup", "--"}), Not(Contains("--root-fs")));
    EXPECT_THAT(completions({"setup", "--"}), Contains("--help"));
    EXPECT_THAT(completions({"exec", "-"}), Contains("-e"));
}

TEST(Completion, OffersTheValuesOfAFlag)
{
    EXPECT_THAT(completions({"--log", ""}), ElementsAre("detail", "error"));
    EXPECT_THAT(completions({"setup", "--log", "e"}), ElementsAre("error"));
}

TEST(Completion, LeavesFilesToTheShell)
{
    EXPECT_THAT(completions({"setup", ""}), IsEmpty());
    EXPECT_THAT(completions({"--root", ""}), IsEmpty());
    EXPECT_THAT(completions({"--log-file", "st"}), IsEmpty());
    EXPECT_THAT(completions({"exec", "--", "st"}), IsEmpty());
    EXPECT_THAT(completions({"exec", "--", "--"}), IsEmpty());
}

TEST(Completion, OffersWordsBehindSomeCommands)
{
    EXPECT_THAT(completions({"completion", ""}), ElementsAre("bash", "powershell"));
    EXPECT_THAT(completions({"help", "ex"}), ElementsAre("exec"));
}

} // namespace
