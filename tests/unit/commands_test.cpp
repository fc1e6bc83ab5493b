// The command lines, and what is read from them again.
#include "commands.h"

#include <gmock/gmock.h>

namespace {

using namespace orb::lvm::detail;
using testing::ElementsAre;

TEST(Commands, EachIsKnownByItsVerb)
{
    EXPECT_EQ(commandOf(commands::wslLookUp("which")), Command::wslLookUp);
    EXPECT_EQ(commandOf(commands::wslVersion("w")), Command::wslVersion);
    EXPECT_EQ(commandOf(commands::wslCheck("w")), Command::wslCheck);
    EXPECT_EQ(commandOf(commands::wslImport("w", "n", "f", "a")), Command::wslImport);
    EXPECT_EQ(commandOf(commands::wslUnregister("w", "n")), Command::wslUnregister);
    EXPECT_EQ(commandOf(commands::dockerLookUp()), Command::dockerLookUp);
    EXPECT_EQ(commandOf(commands::dockerLoad("d", "a")), Command::dockerLoad);
    EXPECT_EQ(commandOf(commands::dockerImport("d", "a", "i")), Command::dockerImport);
    EXPECT_EQ(commandOf(commands::dockerPull("d", "r")), Command::dockerPull);
    EXPECT_EQ(commandOf(commands::dockerTag("d", "r", "i")), Command::dockerTag);
    EXPECT_EQ(commandOf(commands::dockerRun("d", "c", {}, "i")), Command::dockerRun);
    EXPECT_EQ(commandOf(commands::dockerRemoveImage("d", "i")), Command::image);
    EXPECT_EQ(commandOf(commands::dockerRemoveContainer("d", "c")), Command::container);
}

TEST(Commands, OfSomebodyElseAreOthers)
{
    EXPECT_EQ(commandOf({}), Command::other);
    EXPECT_EQ(commandOf({"run"}), Command::other);
    EXPECT_EQ(commandOf({"docker.exe", "ps", "run"}), Command::other);
}

TEST(Commands, SourceIsWhatTheEnvironmentIsMadeFrom)
{
    EXPECT_EQ(sourceOf(commands::wslImport("w", "n", "f", "a")), "a");
    EXPECT_EQ(sourceOf(commands::dockerImport("d", "a", "i")), "a");
    EXPECT_EQ(sourceOf(commands::dockerLoad("d", "a")), "a");
    EXPECT_EQ(sourceOf(commands::dockerPull("d", "r")), "r");
    EXPECT_EQ(sourceOf(commands::dockerTag("d", "r", "i")), "");
    EXPECT_EQ(sourceOf({"d", "load"}), "");
}

TEST(Commands, FolderAndDistributionAreFoundAgain)
{
    EXPECT_EQ(importFolderOf(commands::wslImport("w", "n", "f", "a")), "f");
    EXPECT_EQ(importFolderOf(commands::wslUnregister("w", "n")), "");
    EXPECT_EQ(distributionOf(commands::wslExec("w", "n")), "n");
}

TEST(Commands, FurtherArgumentsOfDockerRunStandInFrontOfTheImage)
{
    EXPECT_THAT(commands::dockerRun("d", "c", {"-v", "x"}, "i"),
                ElementsAre("d", "run", "-di", "--network=host", "--name=c", "-v", "x", "i"));
}

} // namespace
