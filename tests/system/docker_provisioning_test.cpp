// Provisioning and removing on a real Docker engine.
#include "docker_machine.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using foundation::core::except::IMsgIDException;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

struct Failure {
    std::string identifier;
    std::vector<std::string> arguments;
};

Failure provisioningFailure(const std::string& archive, const std::string& image = {}, bool useRootFsArchive = false)
{
    try {
        orb::lvm::importFromTarIfNecessary(archive, image, useRootFsArchive);
    } catch (const IMsgIDException& error) {
        Failure failure{error.message().identifier, {}};
        for (const auto& argument : error.message().arguments) {
            failure.arguments.push_back(argument.text());
        }
        return failure;
    }
    ADD_FAILURE() << "the provisioning succeeded";
    return {};
}

class DockerProvisioning : public testing::Test {
protected:
    void install(const std::string& archive) const
    {
        std::filesystem::copy_file(DockerEngine::archive(archive), tree.archiveFolder() / archive);
    }

    TemporaryFolder folder;
    InstallTree tree{"r2026b"};
    DockerEngine docker;
};

TEST_F(DockerProvisioning, TheFirstTimeTheImageIsLoadedFromTheInstallTree)
{
    install("kelp_hub_docker.tar.gz");
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(docker.images(), ElementsAre("kelp_hub_r2026b:latest"));
}

TEST_F(DockerProvisioning, ASecondTimeDoesNothingAndNeedsNoArchive)
{
    install("kelp_hub_docker.tar.gz");
    orb::lvm::importFromTarIfNecessary("", "", false);
    const std::string before = docker.run({"images", "-aq", "--no-trunc"}).standardOutput;
    std::filesystem::remove(tree.archiveFolder() / "kelp_hub_docker.tar.gz");
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_EQ(docker.run({"images", "-aq", "--no-trunc"}).standardOutput, before);
}

TEST_F(DockerProvisioning, ARootFileSystemIsImportedUnderTheGivenName)
{
    install("kelp_hub_distro.tar.gz");
    orb::lvm::importFromTarIfNecessary("", "kelp_hub_r2026b", true);
    EXPECT_THAT(docker.images(), ElementsAre("kelp_hub_r2026b:latest"));
}

TEST_F(DockerProvisioning, ARootFileSystemWithoutANameStaysUnnamedAndIsReportedMissing)
{
    install("kelp_hub_distro.tar.gz");
    const Failure failure = provisioningFailure("", "", true);
    EXPECT_EQ(failure.identifier, "IMAGE_NOT_EXIST");
    EXPECT_THAT(failure.arguments, ElementsAre("kelp_hub_r2026b"));
    EXPECT_THAT(docker.images(), ElementsAre("<none>:<none>"));
}

TEST_F(DockerProvisioning, AnArchiveInAnAwkwardPlaceIsLoaded)
{
    const std::filesystem::path awkward = folder.path() / std::filesystem::path(u"two words & 100% it's é 漢字");
    std::filesystem::create_directory(awkward);
    std::filesystem::copy_file(DockerEngine::archive("kelp_hub_docker.tar.gz"), awkward / "image.tar.gz");
    orb::lvm::importFromTarIfNecessary(utf8(awkward / "image.tar.gz"), "", false);
    EXPECT_THAT(docker.images(), ElementsAre("kelp_hub_r2026b:latest"));
}

TEST_F(DockerProvisioning, AnEnabledPullProvidesTheImageFromTheRegistry)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    // Required although it is not used; it could not be loaded either.
    std::ofstream(tree.archiveFolder() / "kelp_hub_docker.tar.gz") << "no archive";
    orb::lvm::importFromTarIfNecessary("", "", false);
    EXPECT_THAT(docker.images(), UnorderedElementsAre("kelp_hub_r2026b:latest",
                                                      "zqkelp/kelp_hubkelp_hub_r2026b:kelp_hubkelp_hub_r2026b"));
}

TEST_F(DockerProvisioning, APullThatFailsFallsBackToTheArchiveAndSaysSo)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    const InstallTree other("r1999a"); // the registry holds no image of that release
    testing::internal::CaptureStdout();
    orb::lvm::importFromTarIfNecessary(utf8(DockerEngine::archive("other_image.tar.gz")), "other_image", false);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), StartsWith("ERROR in pullImageFromRegistry: "));
    EXPECT_THAT(docker.images(), ElementsAre("other_image:latest"));
}

TEST_F(DockerProvisioning, WithoutTheSwitchNothingIsPulled)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "true");
    EXPECT_EQ(provisioningFailure(utf8(DockerEngine::archive("other_image.tar.gz"))).identifier, "IMAGE_NOT_EXIST");
    EXPECT_THAT(docker.images(), ElementsAre("other_image:latest"));
}

TEST_F(DockerProvisioning, AMissingArchiveIsNamed)
{
    const Failure failure = provisioningFailure("");
    EXPECT_EQ(failure.identifier, "TAR_FILE_NOT_AVAILABLE");
    EXPECT_THAT(failure.arguments, ElementsAre(utf8(tree.archiveFolder() / "kelp_hub_docker.tar")));
}

TEST_F(DockerProvisioning, ARootFileSystemCannotBeLoadedAsAnImage)
{
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_distro.tar.gz"));
    const Failure failure = provisioningFailure(archive);
    EXPECT_EQ(failure.identifier, "TAR_FILE_LOAD_ERROR");
    ASSERT_THAT(failure.arguments, SizeIs(3));
    EXPECT_EQ(failure.arguments[0], archive);
    EXPECT_EQ(failure.arguments[1], "kelp_hub_r2026b");
    EXPECT_FALSE(failure.arguments[2].empty());
    EXPECT_THAT(docker.images(), IsEmpty());
}

TEST_F(DockerProvisioning, ABrokenArchiveIsReportedWithTheClientsWords)
{
    const std::filesystem::path broken = folder.path() / "broken.tar.gz";
    {
        std::ifstream whole(DockerEngine::archive("kelp_hub_docker.tar.gz"), std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(whole), std::istreambuf_iterator<char>()};
        content.resize(content.size() / 2);
        std::ofstream(broken, std::ios::binary) << content;
    }
    const Failure failure = provisioningFailure(utf8(broken));
    EXPECT_EQ(failure.identifier, "TAR_FILE_LOAD_ERROR");
    EXPECT_FALSE(failure.arguments.at(2).empty());
    EXPECT_THAT(docker.images(), IsEmpty());
}

TEST_F(DockerProvisioning, AnImageOfAnotherNameIsReportedMissingAndKept)
{
    const Failure failure = provisioningFailure(utf8(DockerEngine::archive("other_image.tar.gz")));
    EXPECT_EQ(failure.identifier, "IMAGE_NOT_EXIST");
    EXPECT_THAT(failure.arguments, ElementsAre("kelp_hub_r2026b"));
    EXPECT_THAT(docker.images(), ElementsAre("other_image:latest"));
}

TEST_F(DockerProvisioning, AReleaseWithACapitalLetterCannotNameAnImage)
{
    const InstallTree capital("R2026b");
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_distro.tar.gz"));
    const Failure failure = provisioningFailure(archive, "kelp_hub_R2026b", true);
    EXPECT_EQ(failure.identifier, "TAR_FILE_LOAD_ERROR");
    EXPECT_THAT(failure.arguments.at(2), HasSubstr("must be lowercase"));
}

TEST_F(DockerProvisioning, NamesThatNoImageCanHaveAreReported)
{
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    for (const std::string& name : {std::string("two words"), std::string("--help"), std::string(300, 'n')}) {
        const Failure failure = provisioningFailure(archive, name);
        EXPECT_EQ(failure.identifier, "IMAGE_NOT_EXIST");
        EXPECT_THAT(failure.arguments, ElementsAre(name));
    }
}

TEST_F(DockerProvisioning, WithoutAnEngineTheClientsWordsAreShown)
{
    const EnvironmentVariable host("DOCKER_HOST", "unix:///no/such/socket");
    const Failure failure = provisioningFailure(utf8(DockerEngine::archive("kelp_hub_docker.tar.gz")));
    EXPECT_EQ(failure.identifier, "TAR_FILE_LOAD_ERROR");
    EXPECT_THAT(failure.arguments.at(2), HasSubstr("/no/such/socket"));
}

TEST_F(DockerProvisioning, RemovalTakesTheImageAway)
{
    install("kelp_hub_docker.tar.gz");
    orb::lvm::importFromTarIfNecessary("", "", false);
    docker.run({"load", "-i", utf8(DockerEngine::archive("other_image.tar.gz"))});
    orb::lvm::clearDistroImage("");
    EXPECT_THAT(docker.images(), ElementsAre("other_image:latest"));
    orb::lvm::clearDistroImage("other_image");
    EXPECT_THAT(docker.images(), IsEmpty());
    EXPECT_NO_THROW(orb::lvm::clearDistroImage("no_such_image"));
}

} // namespace
