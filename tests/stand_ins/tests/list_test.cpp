#include "wsl_test.h"

class List : public WslTest {};

namespace {

constexpr char nothingInstalled[] = "Windows Subsystem for Linux has no installed distributions.\n"
                                    "You can resolve this by installing a distribution with the instructions below:\n"
                                    "\n"
                                    "Use 'wsl.exe --list --online' to list available distributions\n"
                                    "and 'wsl.exe --install <Distro>' to install.\n";

} // namespace

TEST_F(List, NothingRegisteredPrintsNothingAndSucceedsWhenQuiet)
{
    EXPECT_THAT(wsl({"--list", "-q"}), succeedsWith(""));
    EXPECT_THAT(wsl({"-l", "--quiet"}), succeedsWith(""));
}

TEST_F(List, NothingRegisteredFailsWhenNotQuiet)
{
    EXPECT_THAT(wsl({"--list"}), failsWith(nothingInstalled));
    EXPECT_THAT(wsl({"--list", "-v"}), failsWith(nothingInstalled));
}

TEST_F(List, QuietPrintsNamesOnlyOnePerLine)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--list", "--quiet"}), succeedsWith("Hub\r\n"));
}

TEST_F(List, DefaultComesFirst)
{
    for (const char* name : {"c", "a", "b"}) {
        importAs(name);
    }
    EXPECT_THAT(list({"-q"}), testing::StartsWith("c\r\n"));
    EXPECT_THAT(wsl({"--set-default", "b"}), succeedsWith(success));
    const std::string names = list({"-q"});
    EXPECT_THAT(names, testing::StartsWith("b\r\n"));
    EXPECT_THAT(names, testing::HasSubstr("a\r\n"));
    EXPECT_THAT(names, testing::HasSubstr("c\r\n"));
    EXPECT_EQ(names.size(), 9U);
}

TEST_F(List, PlainListHasAHeaderAndMarksTheDefault)
{
    importAs("Hub");
    EXPECT_EQ(list({}), lines("Windows Subsystem for Linux Distributions:\nHub (Default)\n"));
}

TEST_F(List, PlainListIsLocalised)
{
    importAs("Hub");
    environment["WSL_STAND_IN_MODE"] = "localised";
    EXPECT_EQ(list({}), lines("Windows-Subsystem für Linux-Distributionen:\nHub (Standard)\n"));
}

TEST_F(List, VerboseTableHasFixedColumns)
{
    importAs("Hub");
    inHub({"true"});
    wsl({"--import", "longer-name", folderOf("x").string(), HUB_ROOTFS, "--version", "1"});
    EXPECT_EQ(list({"--verbose"}), lines("  NAME           STATE           VERSION\n"
                                         "* Hub            Running         2\n"
                                         "  longer-name    Stopped         1\n"));
}

TEST_F(List, QuietAndVerboseTogetherPrintUsage)
{
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"-l", "-q", "-v"}, std::vector<std::string>{"-l", "--all", "--running"}}) {
        const Outcome outcome = wsl(options);
        EXPECT_THAT(outcome, failsSaying("Usage: wsl.exe"));
        EXPECT_THAT(outcome.output, testing::Not(testing::HasSubstr("Error code")));
    }
}

TEST_F(List, NoneRunningPrintsNothingAndSucceedsWhenQuiet)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--list", "-q", "--running"}), succeedsWith(""));
}

TEST_F(List, NoneRunningFailsWhenNotQuiet)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--list", "--running"}), failsWith("There are no running distributions.\n"));
}

TEST_F(List, RunningListsTheRunningOnesOnly)
{
    importAs("Idle");
    importAs("Hub");
    inHub({"true"});
    EXPECT_THAT(wsl({"--list", "-q", "--running"}), succeedsWith("Hub\r\n"));
}

TEST_F(List, RunningIsIgnoredWhenVerbose)
{
    importAs("Hub");
    EXPECT_EQ(list({"--running", "-v"}), lines("  NAME   STATE           VERSION\n"
                                               "* Hub    Stopped         2\n"));
}

TEST_F(List, StatusNamesTheDefaultIfThereIsOne)
{
    EXPECT_THAT(wsl({"--status"}), succeedsWith("Default Version: 2\r\n"));
    importAs("Hub");
    EXPECT_THAT(wsl({"--status"}), succeedsWith("Default Distribution: Hub\r\nDefault Version: 2\r\n"));
}

TEST_F(List, StatusSaysThatVirtualisationIsOffAndSucceeds)
{
    environment["WSL_STAND_IN_MODE"] = "virtualisation-off";
    EXPECT_THAT(wsl({"--status"}),
                succeedsWith(testing::AllOf(testing::StartsWith("Default Version: 2\r\n"),
                                            testing::HasSubstr("virtualization is not enabled on this machine.\r\n"))));
}

TEST_F(List, SetDefaultOfAnUnknownOneFails)
{
    EXPECT_THAT(wsl({"-s", "Hub"}), failsSaying("Wsl/Service/WSL_E_DISTRO_NOT_FOUND"));
}
