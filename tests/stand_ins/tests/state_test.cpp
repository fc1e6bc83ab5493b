// What is registered, what runs, and several processes at once.
#include "wsl_test.h"

#include <chrono>
#include <future>
#include <thread>

namespace fs = std::filesystem;

class State : public WslTest {
protected:
    std::future<Outcome> inBackground(const std::vector<std::string>& arguments)
    {
        return std::async(std::launch::async, [this, arguments] { return wsl(arguments); });
    }

    // Asks until a list is as it should be, for ten seconds at most.
    bool becomes(const std::vector<std::string>& options, const std::string& expected)
    {
        for (int i = 0; i < 1000; ++i) {
            if (list(options) == expected) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
};

TEST_F(State, UnregisterRemovesTheDistributionAndItsFolder)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
    EXPECT_EQ(list({"-q", "--all"}), "");
    EXPECT_FALSE(fs::exists(folderOf("Hub")));
}

TEST_F(State, UnregisterLeavesAFolderWithOtherFiles)
{
    importAs("Hub");
    writeFile(folderOf("Hub") / "notes", "mine");
    wsl({"--unregister", "Hub"});
    EXPECT_EQ(readFile(folderOf("Hub") / "notes"), "mine");
    EXPECT_FALSE(fs::exists(folderOf("Hub") / "ext4.vhdx"));
}

TEST_F(State, UnregisterIgnoresCase)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--unregister", "hUB"}), succeedsWith(success));
    EXPECT_EQ(list({"-q"}), "");
}

TEST_F(State, UnregisterOfAnUnknownOneFails)
{
    EXPECT_THAT(wsl({"--unregister", "Hub"}), failsWith("There is no distribution with the supplied name.\n"
                                                        "Error code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n"));
}

TEST_F(State, UnregisterTakesWhatFollowsAsTheName)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--unregister", "-d", "Hub"}), failsSaying("WSL_E_DISTRO_NOT_FOUND"));
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
}

TEST_F(State, UnregisterSucceedsWhenTheFolderIsGone)
{
    importAs("Hub");
    fs::remove_all(folderOf("Hub"));
    EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
}

// A cleaner takes the file, or the whole folder. Nobody notices before something is to run.
TEST_F(State, DistributionWhoseDiskIsGoneStaysRegisteredAndCannotRun)
{
    importAs("Hub");
    fs::remove(folderOf("Hub") / "ext4.vhdx");
    const std::string start =
        "Failed to attach disk '" + fs::canonical(folderOf("Hub")).string() + "/ext4.vhdx' to WSL2: ";
    EXPECT_THAT(inHub({"true"}), failsWith(start + "The system cannot find the file specified. \n"
                                                   "Error code: Wsl/Service/CreateInstance/MountDisk/HCS/"
                                                   "ERROR_FILE_NOT_FOUND\n"));
    fs::remove_all(folderOf("Hub"));
    EXPECT_THAT(inHub({"true"}), failsWith(start + "The system cannot find the path specified. \n"
                                                   "Error code: Wsl/Service/CreateInstance/MountDisk/HCS/"
                                                   "ERROR_PATH_NOT_FOUND\n"));
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
    EXPECT_THAT(list({"-v"}), testing::HasSubstr("Stopped"));
    EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
    EXPECT_THAT(importAs("Hub"), succeedsWith(success));
    EXPECT_EQ(inHub({"true"}).status, 0);
}

TEST_F(State, DiskOfARunningDistributionIsOpenAndCannotBeTaken)
{
    importAs("Hub");
    environment["WSL_STAND_IN_IDLE_MS"] = "-1";
    inHub({"true"});
    fs::remove(folderOf("Hub") / "ext4.vhdx");
    EXPECT_EQ(inHub({"true"}).status, 0);
}

TEST_F(State, OldVersionHasNoDisk)
{
    EXPECT_THAT(wsl({"--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS, "--version", "1"}),
                succeedsWith(success));
    fs::remove(folderOf("Hub") / "ext4.vhdx");
    EXPECT_EQ(inHub({"true"}).status, 0);
}

TEST_F(State, NextOneBecomesTheDefaultWhenTheDefaultIsRemoved)
{
    importAs("First");
    importAs("Second");
    wsl({"--unregister", "First"});
    EXPECT_EQ(list({}), "Windows Subsystem for Linux Distributions:\r\nSecond (Default)\r\n");
}

TEST_F(State, FirstOfTheRestInTheRegistrysOrderBecomesTheDefault)
{
    for (const char* name : {"a", "b", "c"}) {
        importAs(name);
    }
    const std::string before = list({"-q"});
    ASSERT_EQ(before.substr(0, 3), "a\r\n");
    wsl({"--unregister", "a"});
    EXPECT_EQ(list({"-q"}), before.substr(3));
    EXPECT_EQ(list({}), "Windows Subsystem for Linux Distributions:\r\n" + before.substr(3, 1) + " (Default)\r\n" +
                            before.substr(6));
}

TEST_F(State, UnregisterEndsWhatRuns)
{
    importAs("Hub");
    std::future<Outcome> running = inBackground({"-d", "Hub", "--exec", "sleep", "60"});
    ASSERT_TRUE(becomes({"-q", "--running"}, "Hub\r\n"));
    EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
    EXPECT_EQ(running.get().status, 1);
}

TEST_F(State, StaysRunningForTheIdleTimeAndThenIsStopped)
{
    importAs("Hub");
    environment["WSL_STAND_IN_IDLE_MS"] = "60000";
    inHub({"true"});
    EXPECT_EQ(list({"-q", "--running"}), "Hub\r\n");
    environment["WSL_STAND_IN_IDLE_MS"] = "50";
    std::this_thread::sleep_for(std::chrono::milliseconds(80));
    EXPECT_EQ(list({"-q", "--running"}), "");
}

TEST_F(State, StaysRunningForEverWithANegativeIdleTime)
{
    importAs("Hub");
    inHub({"true"});
    environment["WSL_STAND_IN_IDLE_MS"] = "-1";
    EXPECT_EQ(list({"-q", "--running"}), "Hub\r\n");
}

TEST_F(State, RunsWhileAClientLives)
{
    importAs("Hub");
    environment["WSL_STAND_IN_IDLE_MS"] = "0";
    std::future<Outcome> running = inBackground({"-d", "Hub", "--exec", "sleep", "1"});
    EXPECT_TRUE(becomes({"-q", "--running"}, "Hub\r\n"));
    EXPECT_EQ(running.get().status, 0);
    EXPECT_EQ(list({"-q", "--running"}), "");
}

TEST_F(State, RunsWhileAProgramIsLeftInside)
{
    importAs("Hub");
    environment["WSL_STAND_IN_IDLE_MS"] = "0";
    EXPECT_EQ(shellInHub("sleep 1 >/dev/null 2>&1 &").status, 0);
    EXPECT_EQ(list({"-q", "--running"}), "Hub\r\n");
    EXPECT_TRUE(becomes({"-q", "--running"}, ""));
}

TEST_F(State, CommandEndsWithItsDirectChildNotWithWhatThatLeftBehind)
{
    importAs("Hub");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(shellInHub("sleep 60 & exit 3").status, 3);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(State, TerminateEndsWhatRunsAndStopsTheDistribution)
{
    importAs("Hub");
    std::future<Outcome> running = inBackground({"-d", "Hub", "--exec", "sleep", "60"});
    ASSERT_TRUE(becomes({"-q", "--running"}, "Hub\r\n"));
    EXPECT_THAT(wsl({"--terminate", "Hub"}), succeedsWith(success));
    EXPECT_EQ(running.get().status, 1);
    EXPECT_EQ(list({"-q", "--running"}), "");
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
}

TEST_F(State, TerminateSucceedsWhenNothingRuns)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"-t", "Hub"}), succeedsWith(success));
}

TEST_F(State, TerminateOfAnUnknownOneFails)
{
    EXPECT_THAT(wsl({"-t", "Hub"}), failsSaying("Wsl/Service/WSL_E_DISTRO_NOT_FOUND"));
}

TEST_F(State, ShutdownStopsAllAndPrintsNothing)
{
    importAs("Hub");
    importAs("Other");
    inHub({"true"});
    wsl({"-d", "Other", "--exec", "true"});
    EXPECT_THAT(wsl({"--shutdown"}), succeedsWith(""));
    EXPECT_EQ(list({"-q", "--running"}), "");
    EXPECT_THAT(wsl({"--shutdown", "--force"}), succeedsWith(""));
}

TEST_F(State, KilledClientLeavesTheProgramRunning)
{
    importAs("Hub");
    environment["WSL_STAND_IN_IDLE_MS"] = "0";
    Environment variables = environment;
    const Outcome outcome =
        runProgram({"/usr/bin/timeout",
                    {"--foreground", "-s", "KILL", "0.5", WSL_PROGRAM, "-d", "Hub", "--exec", "sleep", "60"},
                    variables,
                    "",
                    folder.path()});
    EXPECT_EQ(outcome.status, 128 + 9);
    EXPECT_EQ(list({"-q", "--running"}), "Hub\r\n");
    EXPECT_THAT(wsl({"-t", "Hub"}), succeedsWith(success));
    EXPECT_EQ(list({"-q", "--running"}), "");
}

TEST_F(State, NameIsReservedAndHiddenDuringImport)
{
    const std::vector<std::string> import = {"--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS};
    environment["WSL_STAND_IN_IMPORT_MS"] = "1500";
    std::future<Outcome> importing = inBackground(import);
    ASSERT_TRUE(becomes({"-q", "--all"}, "Hub\r\n"));
    EXPECT_EQ(list({"-q"}), "");
    EXPECT_THAT(list({"-v", "--all"}), testing::HasSubstr("Hub    Installing      2\r\n"));
    const std::string busy = "An install, uninstall, or conversion is in progress for this distribution.\n"
                             "Error code: Wsl/Service/";
    EXPECT_THAT(wsl({"--import", "HUB", folderOf("Other").string(), HUB_ROOTFS}),
                failsWith(busy + "RegisterDistro/E_ILLEGAL_STATE_CHANGE\n"));
    EXPECT_THAT(wsl({"--unregister", "Hub"}), failsWith(busy + "E_ILLEGAL_STATE_CHANGE\n"));
    EXPECT_THAT(inHub({"true"}), failsSaying("WSL_E_DISTRO_NOT_FOUND"));
    EXPECT_THAT(importing.get(), succeedsWith(success));
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
}

TEST_F(State, NameOfAKilledImportStaysInstallingUntilItIsUnregistered)
{
    environment["WSL_STAND_IN_IMPORT_MS"] = "60000";
    runProgram({"/usr/bin/timeout",
                {"-s", "KILL", "0.5", WSL_PROGRAM, "--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS},
                environment,
                "",
                folder.path()});
    environment.erase("WSL_STAND_IN_IMPORT_MS");
    EXPECT_EQ(list({"-q"}), "");
    EXPECT_EQ(list({"-q", "--all"}), "Hub\r\n");
    EXPECT_THAT(importAs("Hub"), failsSaying("E_ILLEGAL_STATE_CHANGE"));
    EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
    EXPECT_THAT(importAs("Hub"), succeedsWith(success));
}

TEST_F(State, ImportMayGoOnWhenItsClientIsKilled)
{
    environment["WSL_STAND_IN_MODE"] = "import-goes-on";
    environment["WSL_STAND_IN_IMPORT_MS"] = "1500";
    const Outcome outcome =
        runProgram({"/usr/bin/timeout",
                    {"-s", "KILL", "0.5", WSL_PROGRAM, "--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS},
                    environment,
                    "",
                    folder.path()});
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(list({"-q"}), "");
    EXPECT_TRUE(becomes({"-q"}, "Hub\r\n"));
    EXPECT_THAT(importAs("Hub"), failsSaying("ERROR_ALREADY_EXISTS"));
    environment["WSL_STAND_IN_IMPORT_MS"] = "0";
    EXPECT_THAT(importAs("Other"), succeedsWith(success));
}

TEST_F(State, OneOfManyImportsOfTheSameNameSucceeds)
{
    std::vector<std::future<Outcome>> imports;
    for (int i = 0; i < 8; ++i) {
        imports.push_back(inBackground({"--import", "Hub", folderOf(std::to_string(i)).string(), HUB_ROOTFS}));
    }
    int successes = 0;
    for (std::future<Outcome>& each : imports) {
        const Outcome outcome = each.get();
        if (outcome.status == 0) {
            ++successes;
        } else {
            EXPECT_THAT(outcome, failsSaying("Wsl/Service/RegisterDistro/E"));
        }
    }
    EXPECT_EQ(successes, 1);
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
    EXPECT_EQ(inHub({"true"}).status, 0);
}

TEST_F(State, ImportsOfDifferentNamesAllSucceed)
{
    std::vector<std::future<Outcome>> imports;
    for (int i = 0; i < 8; ++i) {
        const std::string name = std::to_string(i);
        imports.push_back(inBackground({"--import", name, folderOf(name).string(), HUB_ROOTFS}));
    }
    for (std::future<Outcome>& each : imports) {
        EXPECT_THAT(each.get(), succeedsWith(success));
    }
    EXPECT_EQ(list({"-q"}).size(), 8 * 3U);
}

TEST_F(State, ManyProgramsRunAtOnce)
{
    importAs("Hub");
    std::vector<std::future<Outcome>> runs;
    for (int i = 0; i < 16; ++i) {
        runs.push_back(inBackground({"-d", "Hub", "--exec", "sh", "-c", "echo " + std::to_string(i)}));
    }
    for (int i = 0; i < 16; ++i) {
        EXPECT_THAT(runs[static_cast<std::size_t>(i)].get(), succeedsWith(std::to_string(i) + "\n"));
    }
}
