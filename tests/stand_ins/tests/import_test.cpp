#include "wsl_test.h"

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;

class Import : public WslTest {
protected:
    Outcome importFile(const fs::path& file)
    {
        return wsl({"--import", "Hub", folderOf("Hub").string(), file.string(), "--version", "2"});
    }

    // No trace of the name, and none of a folder that was not there before.
    void expectNothingLeft()
    {
        EXPECT_EQ(list({"-q", "--all"}), "");
        EXPECT_FALSE(fs::exists(folderOf("Hub")));
    }
};

namespace {

std::string code(const std::string& text, const std::string& errorCode)
{
    return text + "\nError code: " + errorCode + "\n";
}

const std::string registering = "Wsl/Service/RegisterDistro/";

} // namespace

TEST_F(Import, SuccessIsSaidOnStandardOutputAndNothingOnStandardError)
{
    EXPECT_THAT(importAs("Hub"), succeedsWith(success));
}

TEST_F(Import, MakesADiskInTheFolder)
{
    importAs("Hub");
    EXPECT_TRUE(fs::exists(folderOf("Hub") / "ext4.vhdx"));
}

TEST_F(Import, LeavesTheDistributionStopped)
{
    importAs("Hub");
    EXPECT_EQ(list({"-q", "--running"}), "");
}

TEST_F(Import, FirstOneBecomesTheDefault)
{
    importAs("First");
    importAs("Second");
    EXPECT_THAT(wsl({"--status"}).output, testing::HasSubstr("Default Distribution: First\r\n"));
}

TEST_F(Import, TellsFormatsByContentNotByName)
{
    for (const std::string options : {"", "--gzip", "--xz", "--bzip2"}) {
        const fs::path file = archive("archive.bin" + options, options, {"etc/passwd", "bin/sh"});
        EXPECT_THAT(importFile(file), succeedsWith(success)) << options;
        EXPECT_THAT(wsl({"--unregister", "Hub"}), succeedsWith(success));
    }
}

TEST_F(Import, TakesOptionsAndPositionalsInAnyOrder)
{
    EXPECT_THAT(wsl({"--import", "Hub", "--version", "2", folderOf("Hub").string(), HUB_ROOTFS}),
                succeedsWith(success));
}

TEST_F(Import, TakesAPathInQuotes)
{
    const fs::path folderWithBlank = folder.path() / "a folder";
    EXPECT_THAT(wslRaw("--import Hub \"" + folderWithBlank.string() + "\" " HUB_ROOTFS), succeedsWith(success));
    EXPECT_TRUE(fs::exists(folderWithBlank / "ext4.vhdx"));
}

TEST_F(Import, ReadsStandardInputForADash)
{
    EXPECT_THAT(wsl({"--import", "Hub", folderOf("Hub").string(), "-"}, readFile(HUB_ROOTFS)), succeedsWith(success));
    EXPECT_THAT(inHub({"echo", "a"}), succeedsWith("a\n"));
}

TEST_F(Import, RegisteredNameFailsInAnyCase)
{
    importAs("Hub");
    const std::string text =
        "A distribution with the supplied name already exists. Use --name to choose a different name.";
    for (const std::string name : {"Hub", "hub", "HUB"}) {
        EXPECT_THAT(wsl({"--import", name, folderOf("Other").string(), HUB_ROOTFS}),
                    failsWith(code(text, registering + "ERROR_ALREADY_EXISTS")));
        EXPECT_FALSE(fs::exists(folderOf("Other")));
    }
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
}

TEST_F(Import, FolderOfAnotherDistributionFails)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"--import", "Other", folderOf("Hub").string(), HUB_ROOTFS}),
                failsWith(code("The supplied install location is already in use.", registering + "ERROR_FILE_EXISTS")));
    EXPECT_EQ(inHub({"true"}).status, 0);
}

TEST_F(Import, FolderWithADiskFailsAndTheDiskIsKept)
{
    fs::create_directory(folderOf("Hub"));
    writeFile(folderOf("Hub") / "ext4.vhdx", "precious");
    EXPECT_THAT(importFile(HUB_ROOTFS),
                failsWith(code("Failed to create disk '" + folderOf("Hub").string() + "\\ext4.vhdx': The file exists. ",
                               registering + "ERROR_FILE_EXISTS")));
    EXPECT_EQ(readFile(folderOf("Hub") / "ext4.vhdx"), "precious");
    EXPECT_EQ(list({"-q", "--all"}), "");
}

TEST_F(Import, FolderThatIsNotEmptyIsAllowed)
{
    fs::create_directory(folderOf("Hub"));
    writeFile(folderOf("Hub") / "notes", "mine");
    EXPECT_THAT(importFile(HUB_ROOTFS), succeedsWith(success));
    EXPECT_EQ(readFile(folderOf("Hub") / "notes"), "mine");
}

TEST_F(Import, FolderIsMadeOneLevelDeepOnly)
{
    EXPECT_THAT(wsl({"--import", "Hub", (folderOf("Hub") / "deeper").string(), HUB_ROOTFS}),
                failsWith(code("The system cannot find the path specified. ", "Wsl/ERROR_PATH_NOT_FOUND")));
    expectNothingLeft();
}

TEST_F(Import, MissingFileFailsWithoutReachingTheService)
{
    EXPECT_THAT(importFile(folder.path() / "nothing.tar.gz"),
                failsWith(code("The system cannot find the file specified. ", "Wsl/ERROR_FILE_NOT_FOUND")));
    expectNothingLeft();
}

TEST_F(Import, FolderInPlaceOfTheFileFails)
{
    EXPECT_THAT(importFile(folder.path()), failsWith(code("Access is denied. ", "Wsl/E_ACCESSDENIED")));
    expectNothingLeft();
}

TEST_F(Import, DiskInPlaceOfAnArchiveFailsWithoutAnErrorCode)
{
    for (const std::string name : {"a.vhd", "a.vhdx", "a.VHDX"}) {
        writeFile(folder.path() / name, "");
        EXPECT_THAT(importFile(folder.path() / name),
                    failsWith("This looks like a VHD file. Use --vhd to import a VHD instead of a tar.\n"));
    }
    expectNothingLeft();
}

TEST_F(Import, FewerThanThreeArgumentsFail)
{
    const std::string text = code("The parameter is incorrect. ", "Wsl/E_INVALIDARG");
    EXPECT_THAT(wsl({"--import"}), failsWith(text));
    EXPECT_THAT(wsl({"--import", "Hub", folderOf("Hub").string()}), failsWith(text));
    expectNothingLeft();
}

TEST_F(Import, BadNamesFail)
{
    for (const std::string& name : {std::string("a b"), std::string("ü"), std::string("a/b"), std::string(257, 'a'),
                                    std::string("Legacy"), std::string("LEGACY"), std::string()}) {
        EXPECT_THAT(wsl({"--import", name, folderOf("Hub").string(), HUB_ROOTFS}),
                    failsWith(code("Invalid distribution name: \"" + name + "\".", registering + "E_INVALIDARG")));
    }
    expectNothingLeft();
}

TEST_F(Import, NamesOfLettersDigitsDotsHyphensAndUnderscoresSucceed)
{
    EXPECT_THAT(wsl({"--import", "a.B_c-9", folderOf("x").string(), HUB_ROOTFS}), succeedsWith(success));
    EXPECT_THAT(wsl({"--import", std::string(256, 'a'), folderOf("y").string(), HUB_ROOTFS}), succeedsWith(success));
}

TEST_F(Import, WhatIsNoArchiveFailsWithTheUnpackersUtf8TextBesideUtf16)
{
    environment.erase("WSL_UTF8");
    writeFile(folder.path() / "text", "This is no archive.");
    const Outcome outcome = importFile(folder.path() / "text");
    EXPECT_EQ(outcome.status, ownFailure);
    EXPECT_EQ(outcome.output, utf16("Importing the distribution failed.\r\n"
                                    "Error code: Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED\r\n"));
    EXPECT_EQ(outcome.errors, "bsdtar: Error opening archive: Unrecognized archive format\n");
    environment["WSL_UTF8"] = "1";
    expectNothingLeft();
}

TEST_F(Import, PackedTextIsNoArchiveEither)
{
    writeFile(folder.path() / "text", std::string(2000, 'x'));
    shell("gzip " + (folder.path() / "text").string());
    const Outcome outcome = importFile(folder.path() / "text.gz");
    EXPECT_EQ(outcome.status, ownFailure);
    EXPECT_EQ(outcome.errors, "bsdtar: Error opening archive: Unrecognized archive format\n");
}

TEST_F(Import, TruncatedArchivesFail)
{
    for (const std::string options : {"", "--gzip", "--xz", "--bzip2"}) {
        const fs::path file = archive("cut" + options, options, {"etc/passwd", "bin/sh"});
        fs::resize_file(file, options.empty() ? 2500 : fs::file_size(file) - 20);
        const Outcome outcome = importFile(file);
        EXPECT_EQ(outcome.status, ownFailure) << options;
        EXPECT_THAT(outcome.output, testing::HasSubstr("WSL_E_IMPORT_FAILED")) << options;
        EXPECT_THAT(outcome.errors, testing::StartsWith("bsdtar: ")) << options;
        EXPECT_EQ(outcome.errors.find('\r'), std::string::npos) << options;
    }
    expectNothingLeft();
}

TEST_F(Import, ArchiveWithNeitherEtcNorAShellIsNoDistribution)
{
    EXPECT_THAT(importFile(archive("a.tar", "", {"home/file"})),
                failsWith(code("The imported file is not a valid Linux distribution.",
                               registering + "WSL_E_NOT_A_LINUX_DISTRO")));
    expectNothingLeft();
}

TEST_F(Import, EmptyArchiveIsNoDistribution)
{
    writeFile(folder.path() / "empty", "");
    EXPECT_THAT(importFile(folder.path() / "empty"), failsSaying("WSL_E_NOT_A_LINUX_DISTRO"));
    writeFile(folder.path() / "zeros", std::string(10240, '\0'));
    EXPECT_THAT(importFile(folder.path() / "zeros"), failsSaying("WSL_E_NOT_A_LINUX_DISTRO"));
}

TEST_F(Import, EitherEtcOrAShellIsEnough)
{
    EXPECT_THAT(importFile(archive("a.tar", "", {"etc/passwd"})), succeedsWith(success));
    EXPECT_THAT(wsl({"--import", "Other", folderOf("o").string(), archive("b.tar", "", {"bin/sh"}).string()}),
                succeedsWith(success));
}

TEST_F(Import, WithoutVirtualisationFailsWithFourLinesAndTheCode)
{
    environment["WSL_STAND_IN_MODE"] = "virtualisation-off";
    const Outcome outcome = importFile(HUB_ROOTFS);
    EXPECT_THAT(outcome,
                failsSaying("WSL2 is unable to start since virtualization is not enabled on this machine.\r\n"));
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 5);
    EXPECT_THAT(outcome.output, testing::EndsWith("\r\nError code: Wsl/Service/RegisterDistro/CreateVm/HCS/"
                                                  "HCS_E_HYPERV_NOT_INSTALLED\r\n"));
    expectNothingLeft();
}

TEST_F(Import, WithoutARequiredFeatureFails)
{
    environment["WSL_STAND_IN_MODE"] = "component-missing";
    EXPECT_THAT(importFile(HUB_ROOTFS),
                failsWith(code("The operation could not be started because a required feature is not installed. ",
                               registering + "CreateVm/HCS/HCS_E_SERVICE_NOT_AVAILABLE")));
    expectNothingLeft();
}

TEST_F(Import, ByTheSystemsAccountIsRefused)
{
    environment["WSL_STAND_IN_MODE"] = "local-system";
    EXPECT_THAT(importFile(HUB_ROOTFS), failsWith(code("Running WSL as local system is not supported.",
                                                       "Wsl/Service/WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED")));
    EXPECT_EQ(wsl({"-v"}).status, 0);
    environment.erase("WSL_STAND_IN_MODE");
    expectNothingLeft();
}

TEST_F(Import, CodesOfOldBuildsAreNumbersWithoutTheContextOfRegistering)
{
    importAs("Hub");
    environment["WSL_STAND_IN_MODE"] = "old-codes";
    EXPECT_THAT(importAs("Hub"), failsSaying("\r\nError code: Wsl/Service/0x800700b7\r\n"));
    EXPECT_THAT(wsl({"--import", "a b", folderOf("x").string(), HUB_ROOTFS}),
                failsWith(code("The parameter is incorrect. ", "Wsl/Service/E_INVALIDARG")));
}

TEST_F(Import, MoreThanThreeArgumentsFail)
{
    EXPECT_THAT(wsl({"--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS, "more"}),
                failsSaying("Error code: Wsl/E_INVALIDARG\r\n"));
    expectNothingLeft();
}

TEST_F(Import, FailedOneKeepsAFolderThatWasThereBefore)
{
    fs::create_directory(folderOf("Hub"));
    writeFile(folder.path() / "text", "This is no archive.");
    EXPECT_EQ(importFile(folder.path() / "text").status, ownFailure);
    EXPECT_TRUE(fs::is_empty(folderOf("Hub")));
}
