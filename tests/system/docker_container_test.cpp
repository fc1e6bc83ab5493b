// Containers, and programs inside them, on a real Docker engine.
#include "docker_machine.h"

#include "orb/lvm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class DockerContainer : public testing::Test {
protected:
    DockerContainer()
    {
        orb::lvm::importFromTarIfNecessary(utf8(DockerEngine::archive("kelp_hub_docker.tar.gz")), "", false);
    }

    static RunResult runInside(const std::vector<std::string>& program,
                               std::map<std::string, std::string> environment = {})
    {
        std::vector<std::string> command = orb::lvm::getContainerArgumentsPrefix("");
        orb::lvm::applySharedEnvironment(command, environment);
        command.insert(command.end(), program.begin(), program.end());
        return orb::process::detail::run(command);
    }

    InstallTree tree{"r2026b"};
    DockerEngine docker;
};

TEST_F(DockerContainer, StartsOnceUnderTheDefaultNames)
{
    EXPECT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_THAT(docker.runningContainers(), ElementsAre("kelp_hub"));
    EXPECT_FALSE(orb::lvm::startContainerIfNecessary("", "")) << "the name is in use";
    EXPECT_THAT(docker.containers(), ElementsAre("kelp_hub"));
    EXPECT_THAT(docker
                    .run({"inspect", "--format", "{{.HostConfig.NetworkMode}} {{.Config.OpenStdin}} {{.Config.Image}}",
                          "kelp_hub"})
                    .standardOutput,
                HasSubstr("host true kelp_hub_r2026b"));
}

TEST_F(DockerContainer, StopRemovesItAndASecondStopIsTheClientsToJudge)
{
    ASSERT_TRUE(orb::lvm::startContainerIfNecessary("named", "kelp_hub_r2026b"));
    EXPECT_THAT(docker.runningContainers(), ElementsAre("named"));
    EXPECT_TRUE(orb::lvm::stopContainerIfNecessary("named"));
    EXPECT_THAT(docker.containers(), IsEmpty());
    // Clients differ here: what this one says of a container that does not exist is what the caller gets.
    const bool clientsAnswer = docker.run({"container", "rm", "-f", "named"}).status == 0;
    EXPECT_EQ(orb::lvm::stopContainerIfNecessary("named"), clientsAnswer);
}

TEST_F(DockerContainer, AMissingImageStartsNothing)
{
    EXPECT_FALSE(orb::lvm::startContainerIfNecessary("", "no_such_image"));
    EXPECT_THAT(docker.containers(), IsEmpty());
}

TEST_F(DockerContainer, NamesThatNoContainerCanHaveStartNothing)
{
    for (const char* name : {"two words", "--privileged", "ümlaut", "-"}) {
        EXPECT_FALSE(orb::lvm::startContainerIfNecessary(name, "")) << name;
        EXPECT_THAT(docker.containers(), IsEmpty());
    }
}

TEST_F(DockerContainer, AuxiliaryArgumentsAreSplitAtBlanksTabsAndLineEnds)
{
    const EnvironmentVariable extra("AUX_DOCKER_ARGS", "  --env A=1\t--label \r\n l=\"quoted ");
    EXPECT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_THAT(
        docker.run({"inspect", "--format", "{{json .Config.Env}} {{json .Config.Labels}}", "kelp_hub"}).standardOutput,
        testing::AllOf(HasSubstr("\"A=1\""), HasSubstr(R"("l":"\"quoted")")));
}

TEST_F(DockerContainer, AProgramInsideSeesTheSharedEnvironmentAndTheLibraryPath)
{
    ASSERT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    const RunResult result = runInside({"/opt/vrun/korvane/bin/hub"},
                                       {{"GREETING/u", "grüß dich, 漢字 = \U0001f642"}, {"LD_LIBRARY_PATH", "/mine"}});
    EXPECT_THAT(result.standardOutput, HasSubstr("hub: GREETING=grüß dich, 漢字 = \U0001f642\n"));
    EXPECT_THAT(result.standardOutput,
                HasSubstr("hub: LD_LIBRARY_PATH=/mine:/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64\n"));
}

TEST_F(DockerContainer, StatusesBytesAndArgumentsComeBackUnchanged)
{
    ASSERT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    for (const int status : {0, 1, 42, 67, 87, 255}) {
        EXPECT_EQ(runInside({"sh", "-c", "exit " + std::to_string(status)}).status, status);
    }
    EXPECT_EQ(runInside({"printf", "[%s]", "a b", "", "\"q\"", "b\\", "$HOME", "é漢字", "-d"}).standardOutput,
              "[a b][][\"q\"][b\\][$HOME][é漢字][-d]");
    EXPECT_EQ(runInside({"printf", R"(\000\377\r\n)"}).standardOutput, std::string("\0\377\r\n", 4));
    EXPECT_THAT(runInside({"no-such-program"}).status, testing::AnyOf(126, 127)) << "versions of the client differ";
}

TEST_F(DockerContainer, AnImageInUseIsNotTakenAwayFromItsContainer)
{
    ASSERT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_NO_THROW(orb::lvm::clearDistroImage(""));
    EXPECT_THAT(docker.runningContainers(), ElementsAre("kelp_hub"));
    EXPECT_EQ(runInside({"uname"}).standardOutput, "Linux\n");
}

} // namespace
