// Making the Docker image exist, from an archive.
#include "host_fixture.h"

#include "docker.h"
#include "frame.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
namespace support = orb::container_support;

template <class ID>
using Error = foundation::core::except::Exception<ID, std::exception, void>;

class DockerProvisioning : public HostTest {
protected:
    DockerProvisioning() { host().nativeForm = folder.path().u16string(); }

    // The error that provisioning throws, its identifier first and then its arguments.
    template <class ID>
    static Arguments failure(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
    {
        try {
            dockerImportFromTarIfNecessary(tarPath, imageName, useRootFsArchive);
        } catch (const Error<ID>& error) {
            Arguments found = {error.message().catalogue + ":" + error.message().identifier};
            for (const auto& argument : error.message().arguments) {
                found.push_back(argument.text());
            }
            return found;
        }
        return {"no error"};
    }

    // The client is found and lists `output`.
    void expectStart(const std::string& output)
    {
        expectDockerLookup(client);
        expectImages(client, output);
    }

    Events start() const
    {
        return sequence({{dockerDetail("importFromTarIfNecessary: docker")},
                         dockerLookup(client),
                         {dockerDetail("importFromTarIfNecessary: dockerPath = " + client),
                          "cvt_string_ustring " + client, "exists " + client},
                         images(client)});
    }

    std::string tar(const std::string& name) const
    {
        return folder.entry("toolbox/shared/kavori/kelp/tar_files/" + name);
    }

    void makeTar(const std::string& name) const { folder.makeFile("toolbox/shared/kavori/kelp/tar_files/" + name); }

    // The events of the default archive's choice: `first` is tried, "kelp_hub_docker.tar" is the other one.
    Events defaultArchive(const std::string& first, bool firstExists) const
    {
        const std::string join = "concatenate_pathname " + folder.entry("toolbox/shared/kavori/kelp/tar_files|1 ");
        Events events = tarsDirectoryLookup();
        events.push_back(join + first + " 1");
        events.push_back("exists " + tar(first));
        if (!firstExists) {
            events.push_back(join + "kelp_hub_docker.tar 1");
        }
        const std::string chosen = tar(firstExists ? first : "kelp_hub_docker.tar");
        events.push_back("cvt_ustring_utf8 " + chosen);
        events.push_back("cvt_string_ustring " + chosen);
        events.push_back("exists " + chosen);
        return events;
    }

    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
};

TEST_F(DockerProvisioning, AnImageThatIsListedNeedsNothing)
{
    expectStart("ubuntu\nmirror:5000/x/" + hub + "\n");
    dockerImportFromTarIfNecessary("no such archive", "", false);
    expectEvents(sequence({start(), {askedRelease}}));
}

TEST_F(DockerProvisioning, ANamedImageThatIsListedNeedsNothing)
{
    expectStart("mine\n");
    dockerImportFromTarIfNecessary("no such archive", "mine", true);
    expectEvents(start());
}

TEST_F(DockerProvisioning, TheDefaultArchiveIsLoaded)
{
    makeTar("kelp_hub_docker.tar.gz");
    makeTar("kelp_hub_docker.tar");
    const Arguments load = {client, "load", "-i", tar("kelp_hub_docker.tar.gz")};
    expectStart("ubuntu\n");
    host().expectRun(load, {0, "Loaded", "a warning"});
    expectImages(client, hub);
    dockerImportFromTarIfNecessary("", "", false);
    expectEvents(sequence(
        {start(), {askedRelease}, defaultArchive("kelp_hub_docker.tar.gz", true), {ran(load)}, images(client)}));
}

TEST_F(DockerProvisioning, TheUncompressedArchiveIsLoadedOtherwise)
{
    makeTar("kelp_hub_docker.tar");
    const Arguments load = {client, "load", "-i", tar("kelp_hub_docker.tar")};
    expectStart("");
    host().expectRun(load);
    expectImages(client, hub);
    dockerImportFromTarIfNecessary("", "", false);
    expectEvents(sequence(
        {start(), {askedRelease}, defaultArchive("kelp_hub_docker.tar.gz", false), {ran(load)}, images(client)}));
}

TEST_F(DockerProvisioning, TheRootFileSystemIsImportedUnderTheCallersEmptyName)
{
    makeTar("kelp_hub_distro.tar.gz");
    makeTar("kelp_hub_docker.tar.gz");
    const Arguments import = {client, "import", tar("kelp_hub_distro.tar.gz"), ""};
    expectStart("");
    host().expectRun(import);
    expectImages(client, hub);
    dockerImportFromTarIfNecessary("", "", true);
    expectEvents(sequence(
        {start(), {askedRelease}, defaultArchive("kelp_hub_distro.tar.gz", true), {ran(import)}, images(client)}));
}

TEST_F(DockerProvisioning, TheDockerArchiveIsImportedWhenThereIsNoRootFileSystem)
{
    makeTar("kelp_hub_docker.tar");
    makeTar("kelp_hub_distro.tar");
    makeTar("kelp_hub_docker.tar.gz");
    const Arguments import = {client, "import", tar("kelp_hub_docker.tar"), "mine"};
    expectStart("");
    host().expectRun(import);
    expectImages(client, "mine");
    dockerImportFromTarIfNecessary("", "mine", true);
    Events used = defaultArchive("kelp_hub_distro.tar.gz", false);
    expectEvents(sequence({start(), used, {askedRelease}, {ran(import)}, images(client)}));
}

TEST_F(DockerProvisioning, AGivenArchiveIsTakenAsItIs)
{
    const std::string archive = folder.makeFile("a b.tar");
    expectStart("Mine\nmine2\nmin\n");
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, "x\nmine\n");
    dockerImportFromTarIfNecessary(archive, "mine", false);
    expectEvents(sequence(
        {start(),
         {"cvt_string_ustring " + archive, "exists " + archive, askedRelease, ran({client, "load", "-i", archive})},
         images(client)}));
}

TEST_F(DockerProvisioning, AnArchiveOfAnyTypeIsLeftToTheClient)
{
    const std::string archive = folder.makeFolder("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, hub);
    dockerImportFromTarIfNecessary(archive, "", false);
}

TEST_F(DockerProvisioning, AClientPathOfAnyTypeIsTakenForAClient)
{
    const std::string directory = folder.makeFolder("folder/docker.exe");
    expectDockerLookup(directory);
    expectImages(directory, hub);
    dockerImportFromTarIfNecessary("", "", false);
}

TEST_F(DockerProvisioning, NoClientIsAnErrorThatIsLogged)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    EXPECT_EQ(failure<support::DOCKER_NOT_AVAILABLE>("", "", false),
              Arguments{"orb:container_support:DOCKER_NOT_AVAILABLE"});
    expectEvents({dockerDetail("importFromTarIfNecessary: docker"), ranIn("c:", {"where", "docker.exe"}),
                  dockerDetail("importFromTarIfNecessary: dockerPath = "), "cvt_string_ustring ", "exists ",
                  dockerError("importFromTarIfNecessary: dockerPath doesn't exist")});
}

TEST_F(DockerProvisioning, AClientThatDoesNotExistIsAnErrorThatIsLogged)
{
    const std::string missing = folder.entry("missing.exe");
    host().expectRun({"where", "docker.exe"}, {0, missing + "\r\n", ""});
    EXPECT_EQ(failure<support::DOCKER_NOT_AVAILABLE>("", "", false),
              Arguments{"orb:container_support:DOCKER_NOT_AVAILABLE"});
    expectEvents({dockerDetail("importFromTarIfNecessary: docker"), ranIn("c:", {"where", "docker.exe"}),
                  "cvt_string_ustring " + missing, "exists " + missing,
                  dockerDetail("importFromTarIfNecessary: dockerPath = " + missing), "cvt_string_ustring " + missing,
                  "exists " + missing, dockerError("importFromTarIfNecessary: dockerPath doesn't exist")});
}

// What the look-up printed is the path then, line ends and all.
TEST_F(DockerProvisioning, SeveralClientsThatAreAllPassedOverAreNoClient)
{
    const std::string lines = folder.entry("missing.exe") + "\r\n" + folder.makeFolder("folder/docker.exe");
    host().expectRun({"where", "docker.exe"}, {0, lines + "\r\n", ""});
    EXPECT_EQ(failure<support::DOCKER_NOT_AVAILABLE>("", "", false),
              Arguments{"orb:container_support:DOCKER_NOT_AVAILABLE"});
    EXPECT_EQ(host().eventsLike("log"), (Events{dockerDetail("importFromTarIfNecessary: docker"),
                                                dockerDetail("importFromTarIfNecessary: dockerPath = " + lines),
                                                dockerError("importFromTarIfNecessary: dockerPath doesn't exist")}));
}

TEST_F(DockerProvisioning, AMissingDefaultArchiveIsAnError)
{
    expectStart("");
    EXPECT_EQ(failure<support::TAR_FILE_NOT_AVAILABLE>("", "", false),
              (Arguments{"orb:container_support:TAR_FILE_NOT_AVAILABLE", tar("kelp_hub_docker.tar")}));
    expectEvents(sequence({start(), {askedRelease}, defaultArchive("kelp_hub_docker.tar.gz", false)}));
}

TEST_F(DockerProvisioning, AMissingGivenArchiveIsAnError)
{
    const std::string archive = folder.entry("no archive");
    expectStart("");
    EXPECT_EQ(failure<support::TAR_FILE_NOT_AVAILABLE>(archive, "mine", true),
              (Arguments{"orb:container_support:TAR_FILE_NOT_AVAILABLE", archive}));
    expectEvents(sequence({start(), {"cvt_string_ustring " + archive, "exists " + archive}}));
}

TEST_F(DockerProvisioning, AFailingLoadIsAnErrorWithTheDefaultName)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive}, {1, "output", "load error\n"});
    EXPECT_EQ(failure<support::TAR_FILE_LOAD_ERROR>(archive, "", false),
              (Arguments{"orb:container_support:TAR_FILE_LOAD_ERROR", archive, hub, "load error\n"}));
}

TEST_F(DockerProvisioning, WhateverAFailingLoadPrintsIsPartOfTheError)
{
    const std::string archive = folder.makeFile("archive");
    const std::string printed = std::string(100'000, 'x') + std::string("\0\xFF\r\n", 4);
    expectStart("");
    host().expectRun({client, "load", "-i", archive}, {1, "", printed});
    EXPECT_EQ(failure<support::TAR_FILE_LOAD_ERROR>(archive, "", false).back(), printed);
}

TEST_F(DockerProvisioning, AFailingImportIsAnErrorWithTheDefaultName)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "import", archive, ""}, {-1, "", "import error"});
    EXPECT_EQ(failure<support::TAR_FILE_LOAD_ERROR>(archive, "", true),
              (Arguments{"orb:container_support:TAR_FILE_LOAD_ERROR", archive, hub, "import error"}));
}

TEST_F(DockerProvisioning, AFailingLoadIsAnErrorWithTheGivenName)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive}, {1, "", "load error"});
    EXPECT_EQ(failure<support::TAR_FILE_LOAD_ERROR>(archive, "mine", false),
              (Arguments{"orb:container_support:TAR_FILE_LOAD_ERROR", archive, "mine", "load error"}));
    EXPECT_TRUE(host().eventsLike("log orb:lvm:docker 512").empty());
}

TEST_F(DockerProvisioning, AFailingLoadThatPrintsNoErrorIsDecidedByTheListing)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive}, {1, "output", ""});
    expectImages(client, "mine\n");
    dockerImportFromTarIfNecessary(archive, "mine", false);
}

TEST_F(DockerProvisioning, AnImageThatIsStillMissingIsAnError)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, "MINE\nother\n");
    EXPECT_EQ(failure<support::IMAGE_NOT_EXIST>(archive, "mine", false),
              (Arguments{"orb:container_support:IMAGE_NOT_EXIST", "mine"}));
}

TEST_F(DockerProvisioning, ADefaultImageThatIsStillMissingIsAnErrorWithTheDefaultName)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "import", archive, ""}, {2, "", ""});
    expectImages(client, "");
    EXPECT_EQ(failure<support::IMAGE_NOT_EXIST>(archive, "", true),
              (Arguments{"orb:container_support:IMAGE_NOT_EXIST", hub}));
}

TEST_F(DockerProvisioning, ASecondCallFindsTheImage)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, hub);
    expectStart(hub);
    dockerImportFromTarIfNecessary(archive, "", false);
    host().forgetEvents();
    dockerImportFromTarIfNecessary(archive, "", false);
    expectEvents(start());
}

TEST_F(DockerProvisioning, AnIllFormedArchivePathIsASystemError)
{
    expectStart("");
    EXPECT_THROW(dockerImportFromTarIfNecessary("bad \xFF", "", false), std::system_error);
}

TEST_F(DockerProvisioning, AnExceptionOfTheLoadPassesThrough)
{
    const std::string archive = folder.makeFile("archive");
    expectStart("");
    host().expectRun({client, "load", "-i", archive}, []() -> RunResult { throw std::runtime_error("no"); });
    EXPECT_THROW(dockerImportFromTarIfNecessary(archive, "", false), std::runtime_error);
}

} // namespace
