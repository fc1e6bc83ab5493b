#include "doctor/doctor.h"

#include "doctor/archives.h"
#include "doctor/docker.h"
#include "examinations.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using kelpctl::Archive;
using kelpctl::ArchiveKind;
using kelpctl::CandidateState;
using kelpctl::Examination;
using kelpctl::Finding;
using kelpctl::judge;
using kelpctl::Severity;
using kelpctl::Verdict;
using testing::ElementsAre;

// Problems have a "!" in front.
std::vector<std::string> keys(const Examination& found)
{
    std::vector<std::string> result;
    for (const Finding& finding : judge(found).findings) {
        result.push_back(std::string(finding.severity == Severity::problem ? "!" : "") + finding.key.text());
    }
    return result;
}

Verdict verdict(const Examination& found)
{
    return judge(found).verdict;
}

Examination wslWithout(const char* what)
{
    Examination found = goodWsl();
    const std::string missing = what;
    if (missing != "archive") {
        found.wsl.distributions.clear();
    }
    if (missing != "distribution") {
        for (Archive& archive : found.archives) {
            archive = {archive.name, ArchiveKind::missing, false, 0, false};
        }
    }
    return found;
}

Examination dockerWithoutImage()
{
    Examination found = goodDocker();
    found.docker.images.clear();
    found.docker.containers.clear();
    return found;
}

TEST(VerdictOnWsl, RunningDistributionIsAllThatIsNeeded)
{
    EXPECT_EQ(verdict(goodWsl()), Verdict::exists);
    EXPECT_THAT(keys(goodWsl()), ElementsAre("ENVIRONMENT_READY"));
    EXPECT_THAT(keys(wslWithout("archive")), ElementsAre("ENVIRONMENT_READY")) << "no archive is needed then";
}

TEST(VerdictOnWsl, StoppedDistributionWouldBeStartedUnlessTheHostHasAnAddress)
{
    Examination found = goodWsl();
    found.wsl.distributions[0].state = "Stopped";
    EXPECT_EQ(verdict(found), Verdict::wouldStart);
    found.adapter.address = "172.20.0.1";
    EXPECT_EQ(verdict(found), Verdict::exists);
}

TEST(VerdictOnWsl, DistributionOfUnknownStateExists)
{
    Examination found = goodWsl();
    found.wsl.distributions[0].state = "";
    EXPECT_EQ(verdict(found), Verdict::exists);
    found.wsl.distributions[0].state = "Hibernating";
    EXPECT_EQ(verdict(found), Verdict::exists);
}

TEST(VerdictOnWsl, MissingDistributionCanBeCreated)
{
    EXPECT_EQ(verdict(wslWithout("distribution")), Verdict::ready);
    EXPECT_THAT(keys(wslWithout("distribution")), ElementsAre("DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, MissingDistributionNeedsAnArchive)
{
    EXPECT_EQ(verdict(wslWithout("both")), Verdict::blocked);
    EXPECT_THAT(keys(wslWithout("both")), ElementsAre("!ARCHIVE_NOT_INSTALLED", "DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, ArchiveMustBeOne)
{
    for (const ArchiveKind kind : {ArchiveKind::empty, ArchiveKind::zip, ArchiveKind::text, ArchiveKind::unknown,
                                   ArchiveKind::notAFile, ArchiveKind::notReadable}) {
        Examination found = wslWithout("distribution");
        found.taken.kind = kind;
        EXPECT_THAT(keys(found), ElementsAre("!ARCHIVE_NOT_USABLE", "DISTRIBUTION_MISSING")) << kindName(kind);
    }
    for (const ArchiveKind kind : {ArchiveKind::tar, ArchiveKind::gzip, ArchiveKind::xz, ArchiveKind::bzip2}) {
        Examination found = wslWithout("distribution");
        found.taken.kind = kind;
        EXPECT_EQ(verdict(found), Verdict::ready) << kindName(kind);
    }
    Examination found = wslWithout("distribution");
    found.taken.kind = ArchiveKind::zstd;
    EXPECT_THAT(keys(found), ElementsAre("ARCHIVE_PACKED_UNUSUALLY", "DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, WhichArchiveIsBadIsOfNoInterestWhileItIsNotTaken)
{
    Examination found = wslWithout("distribution");
    found.archives[2].kind = ArchiveKind::empty;
    EXPECT_EQ(verdict(found), Verdict::ready);
}

TEST(VerdictOnWsl, TemporaryFolderMustTakeTheDistribution)
{
    Examination found = wslWithout("distribution");
    found.temporary.writable = false;
    EXPECT_THAT(keys(found), ElementsAre("!TEMPORARY_FOLDER_NOT_USABLE", "DISTRIBUTION_MISSING"));
    found.temporary = {"C:\\gone", false, false, {}};
    EXPECT_THAT(keys(found), ElementsAre("!TEMPORARY_FOLDER_NOT_USABLE", "DISTRIBUTION_MISSING"));
    found.temporary = {"C:\\Temp", true, true, 999};
    EXPECT_THAT(keys(found), ElementsAre("!TEMPORARY_FOLDER_SMALL", "DISTRIBUTION_MISSING"));
    found.temporary.freeBytes = 4000;
    EXPECT_THAT(keys(found), ElementsAre("TEMPORARY_FOLDER_SMALL", "DISTRIBUTION_MISSING"));
    found.temporary.freeBytes.reset();
    EXPECT_THAT(keys(found), ElementsAre("DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, NameThatDiffersInCaseIsTaken)
{
    Examination found = goodWsl();
    found.wsl.distributions[0].name = "KELP_hub_R1";
    EXPECT_THAT(keys(found), ElementsAre("!WSL_NAME_TAKEN", "DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, DistributionThatIsBeingChangedIsInTheWay)
{
    for (const char* state : {"Installing", "Uninstalling", "Converting", "Exporting"}) {
        Examination found = goodWsl();
        found.wsl.distributions[0].state = state;
        EXPECT_THAT(keys(found), ElementsAre("!WSL_BUSY", "DISTRIBUTION_MISSING")) << state;
    }
}

TEST(VerdictOnWsl, DiskThatIsGoneOrCannotBeLookedAtIsInTheWay)
{
    using kelpctl::DiskState;
    Examination found = goodWsl();
    found.wsl.disk = {"C:\\Temp\\0123\\ext4.vhdx", DiskState::present, 1000};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
    found.wsl.disk = {"C:\\Temp\\0123\\ext4.vhdx", DiskState::gone, {}};
    EXPECT_THAT(keys(found), ElementsAre("!DISK_GONE"));
    EXPECT_EQ(judge(found).findings.front().subject, "C:\\Temp\\0123\\ext4.vhdx");
    found.wsl.disk->state = DiskState::unreachable;
    EXPECT_THAT(keys(found), ElementsAre("!DISK_UNREACHABLE"));
    found.wsl.distributions.clear();
    EXPECT_THAT(keys(found), ElementsAre("DISTRIBUTION_MISSING")) << "wsl.exe does not know of it any more";
}

TEST(VerdictOnWsl, AccountsThatWslDoesNotServeAreTold)
{
    Examination found = goodWsl();
    found.account = kelpctl::Account{"PC\\anna", true, false, 1};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
    found.account = kelpctl::Account{"PC\\anna", false, false, 0};
    EXPECT_THAT(keys(found), ElementsAre("SESSION_OF_SERVICES"));
    found.account = kelpctl::Account{"NT AUTHORITY\\SYSTEM", true, true, 0};
    EXPECT_THAT(keys(found), ElementsAre("!WSL_SYSTEM_ACCOUNT"));
    found.account.reset();
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
}

TEST(VerdictOnWsl, PolicyThatForbidsWslIsAProblemAndToldOnce)
{
    Examination found = goodWsl();
    found.wsl.policies = std::vector<kelpctl::Policy>{{"AllowInboxWSL", 0}, {"AllowWSL", 1}};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
    found.wsl.policies = std::vector<kelpctl::Policy>{{"AllowWSL", 0}};
    EXPECT_THAT(keys(found), ElementsAre("!WSL_POLICY"));
    found.wsl.listing = failed({"wsl.exe", "-l", "-q"}, -1, "Error code: Wsl/ERROR_ACCESS_DISABLED_BY_POLICY\r\n");
    EXPECT_THAT(keys(found), testing::Contains("!WSL_POLICY").Times(1));
}

TEST(VerdictOnWsl, KernelOfTheUserMustBeThere)
{
    Examination found = goodWsl();
    found.wsl.config = kelpctl::WslConfigFile{"C:\\Users\\anna\\.wslconfig", true, {"C:\\vmlinux", ""}, true};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
    found.wsl.config->kernelExists.reset();
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY")) << "nothing is guessed";
    found.wsl.config->kernelExists = false;
    EXPECT_THAT(keys(found), ElementsAre("!WSL_KERNEL_MISSING"));
    EXPECT_EQ(judge(found).findings[0].subject, "C:\\vmlinux");
}

TEST(VerdictOnWsl, NetworkingModeWithoutAnAdapterIsANote)
{
    Examination found = goodWsl();
    for (const char* mode : {"", "nat", "NAT"}) {
        found.wsl.config = kelpctl::WslConfigFile{"x", true, {"", mode}, {}};
        EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY")) << mode;
    }
    for (const char* mode : {"mirrored", "none", "virtioproxy", "bridged"}) {
        found.wsl.config = kelpctl::WslConfigFile{"x", true, {"", mode}, {}};
        EXPECT_THAT(keys(found), ElementsAre("NETWORKING_WITHOUT_ADAPTER")) << mode;
        EXPECT_EQ(judge(found).findings[0].subject, mode);
    }
}

TEST(VerdictOnWsl, DistributionOfAnotherAccountIsToldWhenThisOneHasNone)
{
    Examination found = goodWsl();
    found.wsl.otherAccounts = std::vector<std::string>{"PC\\bert"};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
    found = wslWithout("distribution");
    found.wsl.otherAccounts = std::vector<std::string>{"PC\\bert"};
    EXPECT_THAT(keys(found), ElementsAre("OTHER_ACCOUNT", "DISTRIBUTION_MISSING"));
    EXPECT_EQ(judge(found).findings[0].subject, "PC\\bert");
}

TEST(VerdictOnDocker, SettingsOfWslDoNotCount)
{
    Examination found = goodDocker();
    found.account = kelpctl::Account{"NT AUTHORITY\\SYSTEM", true, true, 0};
    found.wsl.policies = std::vector<kelpctl::Policy>{{"AllowWSL", 0}};
    found.wsl.config = kelpctl::WslConfigFile{"x", true, {"C:\\vmlinux", "none"}, false};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY"));
}

TEST(VerdictOnWsl, NameMustBeOneForWsl)
{
    Examination found = wslWithout("distribution");
    found.image = "kelp_hub_R 1";
    EXPECT_THAT(keys(found), ElementsAre("!WSL_NAME_INVALID", "DISTRIBUTION_MISSING"));
}

TEST(VerdictOnWsl, NoWslAtAll)
{
    Examination found = wslWithout("distribution");
    found.wsl.lookUp = failed({"which", "wsl.exe"}, 127, "");
    found.wsl.candidates.clear();
    found.wsl.listing = failed({"C:\\Windows\\System32\\wsl.exe", "-l", "-q"}, 127, "");
    EXPECT_THAT(keys(found), ElementsAre("!WSL_NOT_FOUND"));
}

TEST(VerdictOnWsl, MissingLookUpIsNoReasonForTheOtherBackend)
{
    Examination found = wslWithout("distribution");
    found.wsl.lookUp = failed({"which", "wsl.exe"}, 127, "");
    found.wsl.candidates.clear();
    found.wsl.listing = failed({"C:\\Windows\\System32\\wsl.exe", "-l", "-q"}, 127, "");
    found.docker.lookUp = failed({"where", "docker.exe"}, 127, "");
    found.docker.lookUp.programMissing = true;
    EXPECT_THAT(keys(found), ElementsAre("!LOOK_UP_MISSING"));
    found.backend = kelpctl::Backend::docker;
    EXPECT_EQ(keys(found).front(), "!LOOK_UP_MISSING");
}

TEST(VerdictOnWsl, WhatAnImportNeedsIsOnlyANoteWhileTheDistributionMayBeThere)
{
    Examination found = wslWithout("both");
    found.wsl.listing = failed({"wsl.exe", "-l", "-q"}, -1, "Error code: Wsl/Service/E_UNEXPECTED\n");
    found.temporary.writable = false;
    EXPECT_THAT(keys(found),
                ElementsAre("!WSL_SERVICE_BROKEN", "ARCHIVE_NOT_INSTALLED", "TEMPORARY_FOLDER_NOT_USABLE"));
}

TEST(VerdictOnWsl, CandidateTellsWhatIsWrongWhereThePlaceOfWindowsIsEmpty)
{
    Examination found = goodWsl();
    found.wsl.candidates[0] = {"x", CandidateState::failed, false, failed({"x", "-v"}, 1, "not installed")};
    found.wsl.listing = failed({"C:\\Windows\\System32\\wsl.exe", "-l", "-q"}, 127, "");
    EXPECT_EQ(keys(found).front(), "!WSL_NOT_INSTALLED");
    found.wsl.candidates[0].answer = failed({"x", "-v"}, -1, "no option");
    EXPECT_EQ(keys(found).front(), "!WSL_NOT_USABLE");
}

TEST(VerdictOnWsl, OldWslThatWorksIsANote)
{
    Examination found = goodWsl();
    found.wsl.candidates[0] = {"x", CandidateState::failed, false, failed({"x", "-v"}, -1, "no option")};
    EXPECT_EQ(verdict(found), Verdict::exists);
    EXPECT_THAT(keys(found), ElementsAre("WSL_VERSION_UNKNOWN"));
}

TEST(VerdictOnWsl, HangingIsAProblemUnlessAnotherWslWorks)
{
    Examination found = goodWsl();
    found.wsl.candidates.insert(found.wsl.candidates.begin(), {"C:\\other\\wsl.exe", CandidateState::timedOut, false,
                                                               timedOut({"C:\\other\\wsl.exe", "-v"})});
    EXPECT_THAT(keys(found), ElementsAre("TOOL_HANGS"));
    EXPECT_EQ(judge(found).findings[0].subject, "wsl.exe");
    found.wsl.candidates.pop_back();
    found.wsl.listing = failed({"C:\\Windows\\System32\\wsl.exe", "-l", "-q"}, 127, "");
    EXPECT_THAT(keys(found), ElementsAre("!TOOL_HANGS"));
    found.wsl.listing = timedOut({"C:\\Windows\\System32\\wsl.exe", "-l", "-q"});
    EXPECT_THAT(keys(found), ElementsAre("!TOOL_HANGS"));
    found.wsl.candidates.clear();
    found.wsl.lookUp = timedOut({"which", "wsl.exe"});
    EXPECT_EQ(judge(found).findings[0].subject, "which");
}

TEST(VerdictOnWsl, DockerDoesNotCount)
{
    Examination found = goodWsl();
    found.docker.lookUp = timedOut({"where", "docker.exe"});
    EXPECT_EQ(verdict(found), Verdict::exists);
}

TEST(VerdictOnDocker, RunningContainerIsAllThatIsNeeded)
{
    EXPECT_EQ(verdict(goodDocker()), Verdict::exists);
    EXPECT_THAT(keys(goodDocker()), ElementsAre("ENVIRONMENT_READY"));
}

TEST(VerdictOnDocker, MissingOrStoppedContainerKeepsSetupFromNothing)
{
    Examination found = goodDocker();
    found.docker.containers[0].state = "exited";
    EXPECT_EQ(verdict(found), Verdict::exists);
    EXPECT_THAT(keys(found), ElementsAre("CONTAINER_NOT_RUNNING"));
    found.docker.containers.clear();
    EXPECT_EQ(verdict(found), Verdict::exists);
    EXPECT_THAT(keys(found), ElementsAre("CONTAINER_MISSING"));
}

TEST(VerdictOnDocker, MissingImageNeedsAnArchive)
{
    Examination found = dockerWithoutImage();
    EXPECT_EQ(verdict(found), Verdict::ready);
    EXPECT_THAT(keys(found), ElementsAre("IMAGE_MISSING"));
    found.archives[2] = {"kelp_hub_docker.tar.gz", ArchiveKind::missing, false, 0, false};
    EXPECT_THAT(keys(found), ElementsAre("!ARCHIVE_NOT_INSTALLED", "IMAGE_MISSING"));
    EXPECT_EQ(judge(found).findings[0].subject, "kelp_hub_docker.tar.gz");
}

TEST(VerdictOnDocker, WithTheRegistryTheArchiveMustBeThereButIsNotLookedAt)
{
    Examination found = dockerWithoutImage();
    found.pullsFromRegistry = true;
    found.taken.kind = ArchiveKind::empty;
    EXPECT_THAT(keys(found), ElementsAre("ARCHIVE_NOT_USABLE", "IMAGE_MISSING"));
    found.archives[2] = {"kelp_hub_docker.tar.gz", ArchiveKind::missing, false, 0, false};
    EXPECT_EQ(keys(found).front(), "!ARCHIVE_NOT_INSTALLED");
}

TEST(VerdictOnDocker, OnlyTheLastPartOfTheRepositoryIsCompared)
{
    Examination found = goodDocker();
    found.docker.images[0].repository = "kelp_hub_r1/other";
    EXPECT_EQ(expectedImage(found), nullptr);
    found.docker.images[0].repository = "kelp_hub_r1";
    EXPECT_NE(expectedImage(found), nullptr);
}

TEST(VerdictOnDocker, ClientMustBeThere)
{
    Examination found = dockerWithoutImage();
    found.docker.client.clear();
    found.docker.clientExists = false;
    found.docker.engine = {};
    found.docker.imageListing = {};
    EXPECT_THAT(keys(found), ElementsAre("!DOCKER_NOT_AVAILABLE"));
    found.docker.searchFailure = "exists: too many links";
    EXPECT_THAT(keys(found), ElementsAre("!FILE_NOT_ACCESSIBLE"));
    found.docker.lookUp = timedOut({"where", "docker.exe"});
    EXPECT_THAT(keys(found), ElementsAre("!TOOL_HANGS"));
    EXPECT_EQ(judge(found).findings[0].subject, "where");
}

TEST(VerdictOnDocker, EngineMustAnswer)
{
    Examination found = dockerWithoutImage();
    found.docker.imageListing = {};
    found.docker.engine.answer = failed({"docker.exe", "version"}, 1, "");
    EXPECT_THAT(keys(found), ElementsAre("!DOCKER_ENGINE_NOT_REACHABLE"));
    found.docker.engine.answer = timedOut({"docker.exe", "version"});
    EXPECT_THAT(keys(found), ElementsAre("!TOOL_HANGS"));
    EXPECT_EQ(judge(found).findings[0].subject, "docker.exe");
    found.docker.engine.answer = kelpctl::runThatDidNotStart({"docker.exe", "version"}, "cannot start");
    EXPECT_THAT(keys(found), ElementsAre("!PROGRAM_NOT_STARTED"));
    found.docker.engine.answer = answered({"docker.exe", "version"}, "{}");
    found.docker.imageListing = failed({"docker.exe", "images"}, 1, "");
    EXPECT_THAT(keys(found), ElementsAre("!DOCKER_REFUSED"));
}

TEST(VerdictOnDocker, EngineMustRunLinuxContainers)
{
    Examination found = dockerWithoutImage();
    found.docker.engine.system = "windows";
    EXPECT_THAT(keys(found), ElementsAre("!DOCKER_RUNS_WINDOWS_CONTAINERS", "IMAGE_MISSING"));
}

TEST(VerdictOnDocker, ProductBehindTheNameIsANote)
{
    using kelpctl::DockerProduct;
    Examination found = goodDocker();
    found.docker.engine.product = DockerProduct::desktop;
    EXPECT_EQ(verdict(found), Verdict::exists);
    EXPECT_THAT(keys(found), ElementsAre("HOST_NETWORKING_OPTIONAL"));
    found.docker.engine.product = DockerProduct::podman;
    EXPECT_THAT(keys(found), ElementsAre("DOCKER_IS_PODMAN"));
    found.docker.engine.answer = failed({"docker.exe", "version"}, 1, "");
    EXPECT_EQ(keys(found).front(), "!DOCKER_ENGINE_NOT_REACHABLE");
}

TEST(VerdictOnDocker, SilentEngineThatAVariableNamesIsAnotherThing)
{
    using kelpctl::EngineChoice;
    Examination found = goodDocker();
    found.docker.engine.answer = failed({"docker.exe", "version"}, 1, "");
    for (const EngineChoice choice : {EngineChoice::hostVariable, EngineChoice::contextVariable}) {
        found.docker.settings.choice = choice;
        EXPECT_EQ(keys(found).front(), "!DOCKER_CHOICE_SILENT");
    }
    found.docker.settings.choice = EngineChoice::configuration;
    EXPECT_EQ(keys(found).front(), "!DOCKER_ENGINE_NOT_REACHABLE");
}

TEST(VerdictOnDocker, MissingHelperForPasswordsMattersWhenTheImageIsToBePulled)
{
    Examination found = dockerWithoutImage();
    found.docker.missingHelpers = {"docker-credential-desktop"};
    EXPECT_THAT(keys(found), ElementsAre("IMAGE_MISSING"));
    found.pullsFromRegistry = true;
    EXPECT_THAT(keys(found), ElementsAre("CREDENTIAL_HELPER_MISSING", "IMAGE_MISSING"));
    EXPECT_EQ(judge(found).findings[0].subject, "docker-credential-desktop");
    found = goodDocker();
    found.pullsFromRegistry = true;
    found.docker.missingHelpers = {"docker-credential-desktop"};
    EXPECT_THAT(keys(found), ElementsAre("ENVIRONMENT_READY")) << "nothing is pulled any more";
}

TEST(VerdictOnDocker, NameMustBeOneForDocker)
{
    Examination found = dockerWithoutImage();
    found.image = "kelp_hub_R1";
    EXPECT_THAT(keys(found), ElementsAre("!DOCKER_NAME_INVALID", "IMAGE_MISSING"));
}

TEST(VerdictOnDocker, WslAndTheTemporaryFolderDoNotCount)
{
    Examination found = dockerWithoutImage();
    found.temporary.writable = false;
    EXPECT_EQ(verdict(found), Verdict::ready);
}

TEST(Verdict, EachFindingHasAdviceOfItsOwn)
{
    for (const Examination& found : {goodWsl(), wslWithout("both"), goodDocker(), dockerWithoutImage()}) {
        for (const Finding& finding : judge(found).findings) {
            EXPECT_STREQ(kelpctl::adviceFor(finding.key).key, finding.key.text());
        }
    }
    for (const kelpctl::AdviceKey key : std::initializer_list<kelpctl::AdviceKey>{"ARCHIVE_NOT_INSTALLED",
                                                                                  "ARCHIVE_NOT_USABLE",
                                                                                  "ARCHIVE_PACKED_UNUSUALLY",
                                                                                  "CONTAINER_MISSING",
                                                                                  "CONTAINER_NOT_RUNNING",
                                                                                  "DISK_GONE",
                                                                                  "DISK_UNREACHABLE",
                                                                                  "DISTRIBUTION_MISSING",
                                                                                  "DOCKER_ENGINE_NOT_REACHABLE",
                                                                                  "DOCKER_NAME_INVALID",
                                                                                  "DOCKER_NOT_AVAILABLE",
                                                                                  "DOCKER_REFUSED",
                                                                                  "DOCKER_RUNS_WINDOWS_CONTAINERS",
                                                                                  "ENVIRONMENT_READY",
                                                                                  "FILE_NOT_ACCESSIBLE",
                                                                                  "IMAGE_MISSING",
                                                                                  "PROGRAM_NOT_STARTED",
                                                                                  "TEMPORARY_FOLDER_NOT_USABLE",
                                                                                  "TEMPORARY_FOLDER_SMALL",
                                                                                  "TOOL_HANGS",
                                                                                  "WSL_BUSY",
                                                                                  "WSL_NAME_INVALID",
                                                                                  "WSL_NAME_TAKEN",
                                                                                  "WSL_NOT_USABLE",
                                                                                  "WSL_VERSION_UNKNOWN"}) {
        const Finding finding{Severity::problem, key, "subject"};
        EXPECT_FALSE(findingText(finding, {}).empty()) << key.text();
        EXPECT_FALSE(findingNextStep(finding, {}).empty()) << key.text();
    }
}

} // namespace
