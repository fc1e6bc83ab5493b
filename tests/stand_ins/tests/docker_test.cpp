// The stand-in for docker.exe: what it says in the real client's place, and that the rest is the real client's.
#include "run_program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Docker : public testing::Test {
protected:
    Docker()
    {
        environment["DOCKER_STAND_IN_STATE"] = (folder.path() / "asked").string();
        environment["DOCKER_HOST"] = "unix:///nowhere/docker.sock";
        environment["DOCKER_CONFIG"] = folder.path().string();
    }

    Outcome docker(const std::string& mode, const std::vector<std::string>& arguments)
    {
        environment["DOCKER_STAND_IN_MODE"] = mode;
        return runProgram({DOCKER_PROGRAM, arguments, environment, "", folder.path()});
    }

    std::string version(const std::string& mode)
    {
        const Outcome outcome = docker(mode, {"version", "--format", "{{json .}}"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.output;
    }

    TemporaryFolder folder;
    Environment environment;
};

TEST_F(Docker, WithoutAModeIsTheRealClient)
{
    const Outcome outcome = docker("", {"version", "--format", "{{json .}}"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, AllOf(StartsWith("{\"Client\":{"), HasSubstr("\"Server\":null}")));
    EXPECT_THAT(outcome.errors, HasSubstr("unix:///nowhere/docker.sock"));
}

TEST_F(Docker, DesktopNamesItselfAsThePlatformOfTheServer)
{
    const std::string said = version("desktop");
    EXPECT_THAT(said, HasSubstr("\"Server\":{\"Platform\":{\"Name\":\"Docker Desktop 4.34.2 (167172)\"}"));
    EXPECT_THAT(said, HasSubstr("\"Context\":\"desktop-linux\"}"));
    EXPECT_THAT(said, HasSubstr("\"Os\":\"linux\",\"Arch\":\"amd64\"}}\n"));
}

TEST_F(Docker, EngineForWindowsContainersHasAnotherSystem)
{
    EXPECT_THAT(version("windows"),
                AllOf(HasSubstr("Docker Desktop"), HasSubstr("\"Os\":\"windows\",\"Arch\":\"amd64\"}}\n")));
}

TEST_F(Docker, PodmanSpellsItsMembersInItsOwnWay)
{
    const std::string said = version("podman");
    EXPECT_THAT(said, StartsWith("{\"Client\":{\"APIVersion\":\"5.2.0\",\"Version\":\"5.2.0\""));
    EXPECT_THAT(said, AllOf(HasSubstr("\"OsArch\":\"windows/amd64\""), HasSubstr("\"Server\":{\"APIVersion\":")));
    EXPECT_THAT(said, Not(HasSubstr("Platform")));
    const Outcome context = docker("podman", {"context", "inspect"});
    EXPECT_EQ(context.status, 0);
    EXPECT_EQ(context.output, "[]\n");
}

TEST_F(Docker, ServiceOfPodmanIsAComponentBehindDockersClient)
{
    EXPECT_THAT(version("podman-engine"),
                AllOf(HasSubstr("\"ApiVersion\":\"1.47\""), HasSubstr("\"Components\":[{\"Name\":\"Podman Engine\"")));
}

TEST_F(Docker, EngineThatStartsLateIsNotThereForTheFirstQuestions)
{
    for (int question = 1; question <= 2; ++question) {
        const Outcome outcome = docker("desktop,late=2", {"version", "--format", "{{json .}}"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.output, HasSubstr("\"Server\":null}"));
        EXPECT_THAT(outcome.errors, HasSubstr("unix:///nowhere/docker.sock"));
    }
    EXPECT_THAT(version("desktop,late=2"), HasSubstr("Docker Desktop"));
}

TEST_F(Docker, PullFailsForAnyReason)
{
    struct Row {
        const char* reason;
        const char* text;
    };
    for (const Row& row :
         {Row{"limit", "toomanyrequests: "}, Row{"certificate", "x509: certificate signed by unknown authority"},
          Row{"credentials", "error getting credentials - err: exec: \"docker-credential-"},
          Row{"denied", "pull access denied for "}, Row{"unauthorized", "unauthorized: authentication required"},
          Row{"processor", "no matching manifest for "}, Row{"missing", "manifest unknown"},
          Row{"network", "no such host"}, Row{"anything else", "anything else"}}) {
        const Outcome outcome = docker(std::string("pull=") + row.reason, {"pull", "-q", "x"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, HasSubstr(row.text)) << row.reason;
    }
}
