// Encodings, streams, line ends and the forms of messages.
#include "wsl_test.h"

#include <algorithm>
#include <chrono>

using testing::HasSubstr;
using testing::StartsWith;

class Text : public WslTest {};

TEST_F(Text, IsUtf16LittleEndianWithCrLfAndNoByteOrderMark)
{
    environment.erase("WSL_UTF8");
    importAs("Hub");
    EXPECT_THAT(wsl({"-l", "-q"}), succeedsWith(std::string("H\0u\0b\0\r\0\n\0", 10)));
}

TEST_F(Text, IsUtf8WithCrLfAndNoByteOrderMarkWhenWslUtf8Is1)
{
    importAs("Hub");
    EXPECT_THAT(wsl({"-l", "-q"}), succeedsWith("Hub\r\n"));
}

TEST_F(Text, IsUtf16WhenWslUtf8IsAnythingElse)
{
    importAs("Hub");
    for (const char* value : {"", "0", "true", "01", " 1", "11"}) {
        environment["WSL_UTF8"] = value;
        EXPECT_EQ(list({"-q"}), utf16("Hub\r\n")) << value;
    }
}

TEST_F(Text, OfErrorsGoesToStandardOutputInUtf16Too)
{
    environment.erase("WSL_UTF8");
    const Outcome outcome = wsl({"--unregister", "Hub"});
    EXPECT_EQ(outcome.status, ownFailure);
    EXPECT_EQ(outcome.output, utf16("There is no distribution with the supplied name.\r\n"
                                    "Error code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\r\n"));
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Text, OfOldBuildsEndsLinesWithCrCrLf)
{
    importAs("Hub");
    environment["WSL_STAND_IN_MODE"] = "crcrlf";
    EXPECT_EQ(list({"-q"}), "Hub\r\r\n");
    environment.erase("WSL_UTF8");
    EXPECT_EQ(list({"-q"}), utf16("Hub\r\r\n"));
}

TEST_F(Text, OfTheSystemCarriesATrailingBlank)
{
    EXPECT_EQ(importAs("Hub").output, "The operation completed successfully. \r\n");
}

TEST_F(Text, IsLocalisedButForTheErrorPath)
{
    environment["WSL_STAND_IN_MODE"] = "localised";
    EXPECT_THAT(wsl({"--unregister", "Hub"}), failsWith("Es gibt keine Verteilung mit dem angegebenen Namen.\n"
                                                        "Fehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n"));
}

TEST_F(Text, OfOtherLanguagesHasUmlautsInUtf16)
{
    environment["WSL_STAND_IN_MODE"] = "localised";
    environment.erase("WSL_UTF8");
    const Outcome outcome = wsl({"--list", "--running"});
    const std::string end = utf16("hrt.\r\n");
    EXPECT_THAT(outcome.output, HasSubstr(utf16("ausgef") + std::string("\xFC\0", 2) + end));
}

TEST_F(Text, OfTheVerboseTableIsNotLocalised)
{
    importAs("Hub");
    environment["WSL_STAND_IN_MODE"] = "localised";
    EXPECT_EQ(list({"-v"}), "  NAME   STATE           VERSION\r\n* Hub    Stopped         2\r\n");
}

TEST_F(Text, OfWarningsGoesToStandardErrorAndLeavesTheStatusAlone)
{
    environment["WSL_STAND_IN_MODE"] = "warning";
    environment.erase("WSL_UTF8");
    const Outcome outcome = wsl({"-l", "-q"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, StartsWith(utf16("wsl: ")));
    environment["WSL_DISABLE_WARNINGS"] = "1";
    EXPECT_EQ(wsl({"-l", "-q"}).errors, "");
}

TEST_F(Text, HelpPrintsUsageOnStandardOutputAndFails)
{
    EXPECT_THAT(wsl({"--help"}), failsSaying("Usage: wsl.exe"));
}

TEST_F(Text, VersionHasSevenLinesWithAFourPartNumberFirst)
{
    for (const char* option : {"-v", "--version"}) {
        const Outcome outcome = wsl({option});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 7);
        EXPECT_THAT(outcome.output, testing::ContainsRegex("^WSL version: [0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+\r\n"));
    }
}

TEST_F(Text, VersionDoesNotNeedTheService)
{
    environment.erase("WSL_STAND_IN_STATE");
    EXPECT_EQ(wsl({"-v"}).status, 0);
}

TEST_F(Text, VersionLabelsAreLocalised)
{
    environment["WSL_STAND_IN_MODE"] = "localised";
    EXPECT_THAT(wsl({"-v"}).output, StartsWith("WSL-Version: 2."));
}

TEST_F(Text, AMissingStateFolderIsSaidPlainly)
{
    environment.erase("WSL_STAND_IN_STATE");
    const Outcome outcome = wsl({"-l", "-q"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("WSL_STAND_IN_STATE"));
    environment["WSL_STAND_IN_STATE"] = (folder.path() / "state").string();
}

TEST_F(Text, InboxBuildsCallAnUnknownOptionOptionAndIgnoreWslUtf8)
{
    environment["WSL_STAND_IN_MODE"] = "inbox";
    for (const std::string option : {"-v", "--version"}) {
        const Outcome outcome = wsl({option});
        EXPECT_EQ(outcome.status, ownFailure);
        EXPECT_THAT(outcome.output,
                    StartsWith(utf16("Invalid command line option: " + option + "\r\r\nCopyright (c)")));
        EXPECT_EQ(outcome.errors, "");
    }
    EXPECT_EQ(wsl({"-l", "-q"}).status, 0);
}

TEST_F(Text, InboxBuildsHaveNoStatusAndListVerbosely)
{
    importAs("Hub");
    environment["WSL_STAND_IN_MODE"] = "inbox";
    EXPECT_THAT(wsl({"--status"}).output, StartsWith(utf16("Invalid command line option: --status\r\r\n")));
    EXPECT_EQ(wsl({"--shutdown"}).status, 0);
    EXPECT_EQ(wsl({"--list", "-v"}).output,
              utf16("  NAME   STATE           VERSION\r\r\n* Hub    Stopped         2\r\r\n"));
}

TEST_F(Text, OldestInboxBuildsKnowNeitherVerboseListsNorVersionsOfImports)
{
    environment["WSL_STAND_IN_MODE"] = "inbox-old";
    EXPECT_THAT(wsl({"--list", "-v"}).output, StartsWith(utf16("Invalid command line option: -v\r\r\n")));
    EXPECT_THAT(wsl({"--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS, "--version", "2"}).output,
                StartsWith(utf16("Invalid command line option: --version\r\r\n")));
    EXPECT_EQ(wsl({"--list", "-q"}).status, 0);
    EXPECT_EQ(wsl({"--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS}).status, 0);
}

TEST_F(Text, OfInboxBuildsIsLocalisedToo)
{
    environment["WSL_STAND_IN_MODE"] = "inbox,localised";
    const Outcome outcome = wsl({"-v"});
    EXPECT_EQ(outcome.status, ownFailure);
    EXPECT_EQ(outcome.output.find(utf16("Invalid")), std::string::npos);
    EXPECT_THAT(outcome.output, HasSubstr(utf16(": -v\r\r\n")));
}

TEST_F(Text, NotInstalledIsSaidOnStandardErrorOrOutputWithStatus1Or50AndWslUtf8IsIgnored)
{
    const std::string said =
        utf16("The Windows Subsystem for Linux is not installed. You can install by running 'wsl.exe --install'.\r\n"
              "For more information please visit https://aka.ms/wslinstall\r\n");
    environment["WSL_STAND_IN_MODE"] = "not-installed-stderr";
    const Outcome first = wsl({"-l", "-q"});
    EXPECT_EQ(first.status, 1);
    EXPECT_EQ(first.output, "");
    EXPECT_EQ(first.errors, said);
    environment["WSL_STAND_IN_MODE"] = "not-installed-stdout=50";
    const Outcome second = wsl({"--status"});
    EXPECT_EQ(second.status, 50);
    EXPECT_EQ(second.output, said);
    EXPECT_EQ(second.errors, "");
}

TEST_F(Text, NotInstalledWaitsForSomebodyToPressAKey)
{
    environment["WSL_STAND_IN_MODE"] = "not-installed-stderr";
    environment["WSL_STAND_IN_WAIT_MS"] = "400";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(wsl({"-l", "-v"}).status, 1);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
}

TEST_F(Text, OtherProgramsInItsPlaceAnswerTheSameToEverything)
{
    const auto answer = [this](const std::string& mode, const std::string& option) {
        environment["WSL_STAND_IN_MODE"] = mode;
        return wsl({option});
    };
    for (const std::string option : {"-v", "--list", "--status"}) {
        const Outcome update = answer("must-be-updated", option);
        EXPECT_EQ(update.status, 1);
        EXPECT_EQ(update.errors, utf16("Windows Subsystem for Linux must be updated to the latest version to proceed. "
                                       "You can update by running 'wsl.exe --update'.\r\n"));
        EXPECT_THAT(answer("usage-stub", option).output, HasSubstr(utf16("Usage: wsl.exe")));
        const Outcome inaccessible = answer("not-accessible", option);
        EXPECT_EQ(inaccessible.status, 1);
        EXPECT_EQ(inaccessible.output, utf16("The file cannot be accessed by the system.\r\n"));
    }
}

TEST_F(Text, OfAnUpgradeGoesToStandardErrorAndTheCommandIsDone)
{
    environment["WSL_STAND_IN_MODE"] = "upgrading";
    const Outcome outcome = wsl({"-v"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "WSL is finishing an upgrade...\r\n");
    EXPECT_THAT(outcome.output, StartsWith("WSL version: "));
}
