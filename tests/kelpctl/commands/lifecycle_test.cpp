#include "fake_lvm.h"
#include "session.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void pullInVainAndLoad()
{
    ranProgram({"docker.exe", "pull", "-q", "zqkelp/x"},
               {1, {}, "Error response from daemon: toomanyrequests: later\n"});
    ranProgram({"docker.exe", "load", "-i", "a.tar"}, {0, {}, {}});
}

TEST(Provisioning, PullThatFailedIsANoteWithItsEvidence)
{
    fakeLvm().duringImport = pullInVainAndLoad;
    Session session;
    EXPECT_EQ(session.run({"--docker", "setup"}), 0);
    EXPECT_EQ(session.out, "The image kelp_hub_R1 was created from a.tar.\n");
    EXPECT_EQ(session.error, "note: The registry was asked first and gave no image, so the archive was used.\n"
                             "cause: The registry takes no more requests from this address for now.\n"
                             "evidence: docker.exe pull -q zqkelp/x\n"
                             "    status: 1 (0x00000001)\n"
                             "    standard error: Error response from daemon: toomanyrequests: later\n"
                             "next step: Run \"docker login\", which raises the limit, or wait some hours.\n");
    session.run({"--docker", "--json", "setup"});
    EXPECT_EQ(session.error, "");
    EXPECT_EQ(session.json().at("result").at("notes").at(0).at("cause").at("identifier"), "PULL_LIMIT");
}

TEST(Provisioning, WithoutANoteThereIsNone)
{
    Session session;
    EXPECT_EQ(session.run({"--json", "setup"}), 0);
    EXPECT_EQ(session.json().at("result").at("notes"), boost::json::array());
}

TEST(Starting, OnDockerDesktopHasANote)
{
    Session session;
    session.answers["/usr/bin/docker version --format {{json .}}"] = {
        0, R"json({"Server":{"Platform":{"Name":"Docker Desktop 4.34.2 (167172)"}}})json", {}};
    EXPECT_EQ(session.run({"--docker", "start"}), 0);
    EXPECT_EQ(session.out, "The container kelp_hub was started.\n");
    EXPECT_THAT(session.error, HasSubstr("note: The engine is Docker Desktop."));
    EXPECT_EQ(session.run({"--docker", "--json", "start"}), 0);
    EXPECT_EQ(session.json().at("result").at("notes").at(0).at("identifier"), "HOST_NETWORKING_OPTIONAL");
}

void failToClear()
{
    ranProgram({"wsl.exe", "--unregister", "kelp_hub_R1"},
               {-1, "Nichts da.\r\nFehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\r\n", {}});
}

void clear()
{
    // Looking for the program may fail on the way.
    ranProgram({"where", "wsl.exe"}, {1, {}, {}});
    ranProgram({"wsl.exe", "--unregister", "kelp_hub_R1"}, {0, {}, {}});
}

TEST(Removal, PassesTheNameOn)
{
    Session session;
    EXPECT_EQ(session.run({"remove", "my hub"}), 0);
    EXPECT_EQ(session.run({"remove"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("clear [my hub]", "clear []"));
    EXPECT_EQ(session.error, "");
}

TEST(Removal, TeardownIsTheGateway)
{
    Session session;
    EXPECT_EQ(session.run({"teardown"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("gateway teardown"));
}

TEST(Removal, SuccessIsTold)
{
    fakeLvm().duringClear = clear;
    for (const char* command : {"remove", "teardown"}) {
        Session session;
        EXPECT_EQ(session.run({command}), 0);
        EXPECT_EQ(session.out, "The distribution kelp_hub_R1 was removed.\n");
        session.run({command, "--json", "--docker"});
        EXPECT_EQ(session.json().at("result"), boost::json::parse(R"({"kind": "image", "name": "kelp_hub_R1"})"));
    }
}

TEST(Removal, FailureThatTheLibraryOnlyLogsIsFoundOut)
{
    fakeLvm().duringClear = failToClear;
    for (const char* command : {"remove", "teardown"}) {
        Session session;
        EXPECT_EQ(session.run({command}), 1);
        EXPECT_EQ(session.out, "");
        EXPECT_THAT(session.error, HasSubstr("kelp_hub_R1 could not be removed.\n"
                                             "error: REMOVAL_FAILED\n"
                                             "cause: There is no distribution of that name.\n"
                                             "evidence: wsl.exe --unregister kelp_hub_R1\n"
                                             "    status: -1 (0xFFFFFFFF)\n"
                                             "    code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n"
                                             "    standard output: Nichts da.\n"));
    }
}

TEST(Removal, FailureWithoutAWordIsAFailure)
{
    fakeLvm().duringClear = [] { ranProgram({"wsl.exe", "--unregister", "x"}, {-1, {}, {}}); };
    Session session;
    EXPECT_EQ(session.run({"remove", "--json"}), 1);
    EXPECT_EQ(session.json().at("error").at("identifier"), "REMOVAL_FAILED");
    EXPECT_EQ(session.json().at("error").at("evidence").at("output"), "");
}

TEST(Removal, FailureOfOneRunIsNotThatOfTheNext)
{
    fakeLvm().duringClear = failToClear;
    Session session;
    EXPECT_EQ(session.run({"remove"}), 1);
    fakeLvm().duringClear = clear;
    EXPECT_EQ(session.run({"remove"}), 0);
    EXPECT_EQ(session.error, "");
}

TEST(Removal, WhatDockerDoesNotHaveIsTold)
{
    Session session;
    session.answers["/usr/bin/docker version --format {{json .}}"] = {0, "{}", {}};
    EXPECT_EQ(session.run({"--docker", "remove", "typo"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: REMOVAL_FAILED\ncause: There is no image typo.\n"));
    EXPECT_EQ(session.run({"--docker", "teardown"}), 1);
    EXPECT_EQ(session.run({"--docker", "stop", "--container", "typo"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: CONTAINER_NOT_STOPPED\ncause: There is no container typo.\n"));
    EXPECT_TRUE(fakeLvm().calls.empty());
}

TEST(Removal, ContainerThatGoesOnIsNamed)
{
    Session session;
    session.answers["/usr/bin/docker image inspect --format {{.Id}} kelp_hub_R1"] = {0, "id\n", {}};
    session.answers["/usr/bin/docker container inspect --format {{.State.Status}} kelp_hub"] = {0, "running\n", {}};
    EXPECT_EQ(session.run({"--docker", "teardown"}), 0);
    EXPECT_EQ(session.out,
              "The image kelp_hub_R1 was removed.\nThe container kelp_hub still runs; \"kelpctl --docker stop "
              "--container kelp_hub\" removes it.\n");
}

TEST(Removal, MissingDockerClientIsTold)
{
    fakeLvm().dockerPath = "";
    for (const char* command : {"remove", "teardown", "start", "stop", "prefix"}) {
        Session session;
        EXPECT_EQ(session.run({"--docker", command}), 1);
        EXPECT_THAT(session.error, HasSubstr("error: DOCKER_NOT_AVAILABLE\n"));
    }
    EXPECT_TRUE(fakeLvm().calls.empty());
}

} // namespace
