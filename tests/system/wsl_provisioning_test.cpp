// Provisioning, running and removing under WSL, with real archives and real programs.
#include "machine.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

RunResult runInside(const std::vector<std::string>& program, std::map<std::string, std::string> environment = {})
{
    std::vector<std::string> command = orb::lvm::getContainerArgumentsPrefix("");
    orb::lvm::applySharedEnvironment(command, environment);
    command.insert(command.end(), program.begin(), program.end());
    return orb::process::detail::run(command, environment);
}

class WslProvisioning : public testing::Test {
protected:
    ~WslProvisioning() override { wsl.clear(); }

    InstallTree tree;
    Wsl wsl;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
};

TEST_F(WslProvisioning, TheFirstTimeTheDistributionIsImportedFromTheInstallTree)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
    EXPECT_EQ(runInside({"uname"}).standardOutput, "Linux\n");
}

TEST_F(WslProvisioning, TheFirstTimeRunsExactlyTheseChildren)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.takeCalls(),
                ElementsAre("where wsl.exe", "wsl -v", "wsl --list -q", StartsWith("wsl --import kelp_hub_R2026b ")));
}

TEST_F(WslProvisioning, ARunningDistributionIsLeftAloneByExactlyTheseChildren)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    ASSERT_EQ(runInside({"true"}).status, 0);
    wsl.takeCalls();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.takeCalls(), ElementsAre("wsl --list -q", "wsl --list -q --running"));
}

TEST_F(WslProvisioning, AStoppedDistributionIsStarted)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.running(), IsEmpty());
    wsl.takeCalls();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.running(), ElementsAre("kelp_hub_R2026b"));
    EXPECT_THAT(wsl.takeCalls(),
                ElementsAre("wsl --list -q", "wsl --list -q --running", "wsl -d kelp_hub_R2026b --exec ~"));
}

// Ends every import soon after its start, as kelpctl does when it is interrupted.
class EndsImports : public orb::process::detail::RunObserver {
public:
    EndsImports() : before_(orb::process::detail::observeRuns(this)) {}
    ~EndsImports() override { orb::process::detail::observeRuns(before_); }
    EndsImports(const EndsImports&) = delete;
    EndsImports& operator=(const EndsImports&) = delete;

    void starting(const std::vector<std::string>& arguments, orb::process::detail::RunOptions& /*options*/) override
    {
        import_ = arguments.size() > 1 && arguments[1] == "--import";
        start_ = std::chrono::steady_clock::now();
    }
    bool shouldTerminate() override
    {
        return import_ && std::chrono::steady_clock::now() - start_ > std::chrono::milliseconds(1500);
    }
    void ended(const std::vector<std::string>&, const orb::process::detail::RunResult*) noexcept override {}

private:
    RunObserver* before_;
    bool import_ = false;
    std::chrono::steady_clock::time_point start_;
};

TEST_F(WslProvisioning, AnImportMayGoOnAfterItsWslWasEndedAndIsFoundByTheNextOne)
{
    tree.install();
    {
        const EnvironmentVariable mode("WSL_STAND_IN_MODE", "import-goes-on");
        const EnvironmentVariable duration("WSL_STAND_IN_IMPORT_MS", "4000");
        const EndsImports observer;
        EXPECT_ANY_THROW(orb::lvm::importFromTarIfNecessary("", "", false));
    }
    EXPECT_THAT(wsl.distributions(), IsEmpty());
    for (int i = 0; i < 600 && wsl.distributions().empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
    EXPECT_NO_THROW(orb::lvm::importFromTarIfNecessary("", "", false));
}

TEST_F(WslProvisioning, TheUncompressedArchiveServesWhenItIsTheOnlyOne)
{
    tree.install("kelp_hub_distro.tar");
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
}

TEST_F(WslProvisioning, ANamedDistributionComesFromANamedArchive)
{
    orb::lvm::importFromTarIfNecessary(utf8(hubArchive()), "other-name", false);
    EXPECT_THAT(wsl.distributions(), ElementsAre("other-name"));
}

TEST_F(WslProvisioning, RemovalLeavesNothing)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_FALSE(temporaryDirectoryIsClean(temporary.path()));
    orb::lvm::clearDistroImage("");
    EXPECT_THAT(wsl.distributions(), IsEmpty());
    EXPECT_TRUE(temporaryDirectoryIsClean(temporary.path()));
}

TEST_F(WslProvisioning, RemovalTouchesNoOtherDistribution)
{
    wsl.import("bystander");
    orb::lvm::clearDistroImage("");
    EXPECT_THAT(wsl.distributions(), ElementsAre("bystander"));
}

TEST_F(WslProvisioning, AProgramInsideSeesTheSharedEnvironmentAndTheLibraryPath)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    const RunResult result = runInside({"/opt/vrun/korvane/bin/hub"}, {{"GREETING", "grüß dich, 漢字 \U0001f642"}});
    EXPECT_THAT(result.standardOutput, HasSubstr("hub: GREETING=grüß dich, 漢字 \U0001f642\n"));
    EXPECT_THAT(result.standardOutput,
                HasSubstr("hub: LD_LIBRARY_PATH=/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64\n"));
}

TEST_F(WslProvisioning, StatusesOfLinuxProgramsComeBack)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    for (const int status : {0, 1, 42, 126, 254}) {
        EXPECT_EQ(runInside({"sh", "-c", "exit " + std::to_string(status)}).status, status);
    }
}

TEST_F(WslProvisioning, ArgumentsAndBytesArriveUnchanged)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    const std::vector<std::string> arguments = {"a b", "", "\"quoted\"", "back\\slash\\", "$HOME", "*", "é漢字", "-d"};
    std::vector<std::string> program = {"printf", "[%s]"};
    program.insert(program.end(), arguments.begin(), arguments.end());
    EXPECT_EQ(runInside(program).standardOutput, "[a b][][\"quoted\"][back\\slash\\][$HOME][*][é漢字][-d]");
    EXPECT_EQ(runInside({"printf", R"(\000\377\r\n)"}).standardOutput, std::string("\0\377\r\n", 4));
}

TEST_F(WslProvisioning, ASharedVariableArrivesUnderTheCallersNameWhateverIsInherited)
{
    tree.install();
    orb::lvm::importFromTarIfNecessary("", "", false);
    const EnvironmentVariable inherited("SHARED_TEST_PROXY", "inherited");
    EXPECT_EQ(
        runInside({"sh", "-c", "printf %s \"$shared_test_proxy\""}, {{"shared_test_proxy", "given"}}).standardOutput,
        "given");
}

TEST_F(WslProvisioning, ADistributionThatDiffersInCaseBlocksTheImportAndStays)
{
    tree.install();
    wsl.import("KELP_HUB_R2026B");
    try {
        orb::lvm::importFromTarIfNecessary("", "", false);
        FAIL() << "WSL takes names that differ in case for the same";
    } catch (const foundation::core::except::IMsgIDException& error) {
        EXPECT_EQ(error.message().identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
        EXPECT_THAT(error.userText(), HasSubstr("Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS"));
    }
    EXPECT_THAT(wsl.distributions(), ElementsAre("KELP_HUB_R2026B"));
}

// A place for the install tree, or a name of an archive, that programs have tripped over.
class AwkwardPath : public WslProvisioning, public testing::WithParamInterface<std::u16string> {};

TEST_P(AwkwardPath, TheArchiveIsImportedFromThere)
{
    const std::filesystem::path folder = temporary.path() / std::filesystem::path(GetParam());
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(hubArchive(), folder / "archive.tar.gz");
    orb::lvm::importFromTarIfNecessary(utf8(folder / "archive.tar.gz"), "", false);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
    EXPECT_EQ(runInside({"uname"}).standardOutput, "Linux\n");
}

TEST_P(AwkwardPath, TheTemporaryDirectoryMayLieThere)
{
    tree.install();
    const std::filesystem::path folder = temporary.path() / std::filesystem::path(GetParam());
    std::filesystem::create_directories(folder);
    const TemporaryDirectory awkward(folder);
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
    EXPECT_FALSE(temporaryDirectoryIsClean(folder));
    orb::lvm::clearDistroImage("");
    EXPECT_TRUE(temporaryDirectoryIsClean(folder));
}

INSTANTIATE_TEST_SUITE_P(Paths, AwkwardPath,
                         testing::Values(u"two words", u"a & b", u"100% done %PATH%", u"it's", u"é", u"漢字",
                                         u"\U0001f642", u"(x86) [a] {b} $HOME ; ^ ! ` = +,~"));

} // namespace
