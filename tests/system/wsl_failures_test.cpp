// What goes wrong under WSL, and that nothing is lost by it.
#include "machine.h"

#include "orb/lvm.h"

#include "host/array.h"
#include "host/configuration.h"
#include "host/diagnostics.h"
#include "host/exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The text that the user sees, after the error has been checked to be the import's and to name the archive.
std::string importError(const std::string& archive, const std::string& name = {})
{
    try {
        orb::lvm::importFromTarIfNecessary(archive, name, false);
    } catch (const foundation::core::except::IMsgIDException& error) {
        EXPECT_EQ(error.message().identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
        if (!archive.empty()) {
            EXPECT_EQ(error.message().arguments.at(0).text(), archive);
        }
        return error.userText();
    }
    ADD_FAILURE() << "the import succeeded";
    return {};
}

double wslCheck()
{
    hxArray* output = nullptr;
    kelp_container_wsl_check(0, &output, 0, nullptr);
    const hxArrayPtr owner(output);
    return hxGetScalar(output);
}

class WslFailures : public testing::Test {
protected:
    WslFailures() { wsl.import("bystander"); }
    // Whatever was tried, what was there before is there still, and nothing new.
    ~WslFailures() override
    {
        EXPECT_THAT(wsl.distributions(), ElementsAre("bystander"));
        wsl.clear();
    }

    std::filesystem::path file(const std::string& content) const
    {
        const std::filesystem::path path = temporary.path() / "archive.tar.gz";
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    InstallTree tree;
    Wsl wsl;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
};

TEST_F(WslFailures, AMissingArchiveIsNamed)
{
    EXPECT_THAT(importError(utf8(temporary.path() / "missing.tar.gz")), HasSubstr("Wsl/ERROR_FILE_NOT_FOUND"));
}

TEST_F(WslFailures, WithoutAnyArchiveTheUncompressedOneIsNamed)
{
    EXPECT_THAT(importError(""), HasSubstr(utf8(tree.archiveFolder() / "kelp_hub_distro.tar")));
}

TEST_F(WslFailures, AnEmptyArchiveIsNoDistribution)
{
    EXPECT_THAT(importError(utf8(file(""))), HasSubstr("Wsl/Service/RegisterDistro/WSL_E_NOT_A_LINUX_DISTRO"));
}

TEST_F(WslFailures, ATruncatedArchiveFails)
{
    std::ifstream whole(hubArchive(), std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(whole), std::istreambuf_iterator<char>()};
    content.resize(content.size() / 2);
    EXPECT_THAT(importError(utf8(file(content))), HasSubstr("Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"));
}

TEST_F(WslFailures, AFolderIsNoArchive)
{
    const std::filesystem::path folder = temporary.path() / "folder.tar.gz";
    std::filesystem::create_directory(folder);
    EXPECT_THAT(importError(utf8(folder)), HasSubstr("Wsl/E_ACCESSDENIED"));
}

TEST_F(WslFailures, AFileOfAnotherKindIsNoArchive)
{
    EXPECT_THAT(importError(utf8(file("this is a letter, not an archive\n"))),
                HasSubstr("Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"));
}

TEST_F(WslFailures, APathOfThreeHundredCharactersIsPassedWhole)
{
    std::filesystem::path folder = temporary.path();
    while (utf8(folder).size() < 250) {
        folder /= std::string(40, 'd');
    }
    std::filesystem::create_directories(folder);
    const std::string archive = utf8(folder / (std::string(50, 'a') + ".tar.gz"));
    ASSERT_GE(archive.size(), 300U);
    EXPECT_THAT(importError(archive), HasSubstr(archive));
}

TEST_F(WslFailures, ANameWithABlankIsRefused)
{
    EXPECT_THAT(importError(utf8(hubArchive()), "two words"), HasSubstr("Wsl/Service/RegisterDistro/E_INVALIDARG"));
}

TEST_F(WslFailures, AnotherLanguageIsShownAsItIs)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "localised");
    const std::string text = importError(utf8(temporary.path() / "missing.tar.gz"));
    EXPECT_THAT(text, HasSubstr("Wsl/ERROR_FILE_NOT_FOUND"));
    EXPECT_EQ(text.find("\uFFFD"), std::string::npos) << text;
}

TEST_F(WslFailures, VirtualisationThatIsOffIsReported)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "virtualisation-off");
    EXPECT_THAT(importError(utf8(hubArchive())),
                HasSubstr("Wsl/Service/RegisterDistro/CreateVm/HCS/HCS_E_HYPERV_NOT_INSTALLED"));
}

TEST_F(WslFailures, AFeatureThatIsMissingIsReported)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "component-missing");
    EXPECT_THAT(importError(utf8(hubArchive())),
                HasSubstr("Wsl/Service/RegisterDistro/CreateVm/HCS/HCS_E_SERVICE_NOT_AVAILABLE"));
}

TEST_F(WslFailures, AnOldWslThatKnowsNoVersionOfImportsIsReported)
{
    ASSERT_EQ(wslCheck(), 0.0);
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "inbox-old@import");
    EXPECT_THAT(importError(utf8(hubArchive())), HasSubstr("Invalid command line option: --version"));
}

TEST_F(WslFailures, RemovingWhatIsNotThereIsLoggedAndNothingElse)
{
    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    configuration.setChannelMasks({{"orb", 512}});
    foundation::core::config::configure(configuration);
    std::vector<std::string> errors;
    const auto sink = foundation::core::diag::attach_sink(
        [&errors](const foundation::core::diag::log_record& record) { errors.push_back(record.message); });
    orb::lvm::clearDistroImage("no-such-distribution");
    EXPECT_THAT(errors, ElementsAre(testing::StartsWith("clearDistroImage: distro's clear unsuccessful cout = "),
                                    "clearDistroImage: distro's clear unsuccessful cerr = "));
}

TEST_F(WslFailures, TheCheckAnswersZeroWhenWslWorksAndMinusThreeWhenNot)
{
    EXPECT_EQ(wslCheck(), 0.0);
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "status=1");
    EXPECT_EQ(wslCheck(), -3.0);
}

TEST_F(WslFailures, AnOldWslThatDoesNotKnowTheProbeIsNotUsed)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "inbox");
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "C:\\Windows\\System32\\wsl.exe");
}

TEST_F(WslFailures, AnImportThatDoesNothingAndSaysSoIsBelieved)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "nothing");
    EXPECT_NO_THROW(orb::lvm::importFromTarIfNecessary(utf8(hubArchive()), "", false));
}

// Programs in the place of where and wsl.exe that answer as a test wants.
class ScriptedWsl : public testing::Test {
protected:
    void answer(const std::string& standardOutput, int status = 0, const std::string& standardError = {}) const
    {
        programs.add("wsl.exe", standardOutput, status, standardError);
        programs.add("where", utf8(programs.path("wsl.exe")) + "\r\n");
    }

    // Before an import a folder is made, which nobody here removes.
    bool importWasTried() const { return !temporaryDirectoryIsClean(temporary.path()); }

    InstallTree tree;
    ScriptedPrograms programs;
    TemporaryDirectory temporary;
};

// This machine has no wsl.exe in the place where Windows keeps it.
void expectMissingWsl()
{
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "C:\\Windows\\System32\\wsl.exe");
    EXPECT_EQ(wslCheck(), -3.0);
    EXPECT_THAT(importError(""), HasSubstr("cannot start 'C:\\Windows\\System32\\wsl.exe'"));
    EXPECT_NO_THROW(orb::lvm::clearDistroImage(""));
}

TEST_F(ScriptedWsl, WithoutALookUpCommandThePlaceWhereWindowsKeepsItIsTried)
{
    expectMissingWsl();
}

TEST_F(ScriptedWsl, AMissingWslIsReportedByTheImportAndTheCheck)
{
    programs.add("where", "", 1, "INFO: Could not find files for the given pattern(s).\r\n");
    programs.add("which", "", 1);
    expectMissingWsl();
}

TEST_F(ScriptedWsl, GarbageInTheListingIsNoDistribution)
{
    answer("\x01\x02\xff\xfe garbage \xc3\x28 \x80\n");
    EXPECT_NO_THROW(orb::lvm::importFromTarIfNecessary("", "", false)) << "the scripted import claims success";
    EXPECT_TRUE(importWasTried());
}

TEST_F(ScriptedWsl, AFailureKeepsBothStreamsByteForByte)
{
    const std::string output("out \xff\0\x80\r\n\n", 9);
    const std::string error("\0err \xc3\x28\r\n", 9);
    answer("");
    ASSERT_EQ(orb::lvm::getContainerExecutablePath(), utf8(programs.path("wsl.exe")));
    answer(output, -1, error);
    const std::string status = std::to_string(orb::process::detail::run({utf8(programs.path("wsl.exe"))}).status);

    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    configuration.setChannelMasks({{"orb", 512}});
    foundation::core::config::configure(configuration);
    std::vector<std::string> errors;
    const auto sink = foundation::core::diag::attach_sink(
        [&errors](const foundation::core::diag::log_record& record) { errors.push_back(record.message); });
    try {
        orb::lvm::importFromTarIfNecessary("archive", "", false);
        FAIL() << "the import succeeded";
    } catch (const foundation::core::except::IMsgIDException& failure) {
        EXPECT_EQ(failure.message().arguments.at(1).text(), "cout = \n" + output + "\ncerr = \n" + error + "\n");
    }
    EXPECT_THAT(errors, ElementsAre("getDistros: status = " + status + "; " + error,
                                    "importFromTarIfNecessary: distro's import unsuccessful cout = " + output,
                                    "importFromTarIfNecessary: distro's import unsuccessful cerr = " + error));
}

TEST_F(ScriptedWsl, AHundredMegabytesAreRead)
{
    std::string flood;
    flood.reserve(100'000'100);
    while (flood.size() < 100'000'000) {
        flood += "distribution-name-that-goes-on-and-on\r\n";
    }
    // The probe need not print it as well.
    answer("");
    ASSERT_EQ(orb::lvm::getContainerExecutablePath(), utf8(programs.path("wsl.exe")));
    answer(flood + "kelp_hub_R2026b\r\n");
    EXPECT_NO_THROW(orb::lvm::importFromTarIfNecessary("", "", false));
    EXPECT_FALSE(importWasTried()) << "the last name is the hub's";
}

TEST_F(ScriptedWsl, NothingAtAllMeansNoDistribution)
{
    answer("");
    EXPECT_EQ(wslCheck(), 0.0);
    EXPECT_NO_THROW(orb::lvm::importFromTarIfNecessary("", "", false));
    EXPECT_TRUE(importWasTried());
}

TEST_F(ScriptedWsl, CandidatesThatCannotBeRunArePassedOver)
{
    programs.add("wsl.exe", "");
    const std::string good = utf8(programs.path("wsl.exe"));
    std::string lines =
        "relative\\wsl.exe\r\n" + utf8(temporary.path()) + "\r\n\r\n" + utf8(temporary.path() / "missing.exe");
    programs.add("where", lines + "\r\n" + good + "\r\n");
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), good);
}

} // namespace
