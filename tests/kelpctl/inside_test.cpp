#include "inside.h"

#include "fake_lvm.h"
#include "platform.h"
#include "session.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::mergedWslenv;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

TEST(Wslenv, OwnEntriesOfTheUserComeFirst)
{
    EXPECT_EQ(mergedWslenv("", "A:B"), "A:B");
    EXPECT_EQ(mergedWslenv("USER/u:HOME/p", "A:B"), "USER/u:HOME/p:A:B");
}

TEST(Wslenv, EntryOfTheSameVariableGivesWay)
{
    EXPECT_EQ(mergedWslenv("A/w:USER/u:B/p", "A:B"), "USER/u:A:B");
    EXPECT_EQ(mergedWslenv("A", "A/p"), "A/p");
    EXPECT_EQ(mergedWslenv("AA:a", "A"), "AA:a:A");
}

TEST(Wslenv, EmptyEntriesAreDropped)
{
    EXPECT_EQ(mergedWslenv(":X::", "A"), "X:A");
    EXPECT_EQ(mergedWslenv(":", "A"), "A");
}

TEST(Exec, WslGetsTheProgramAndListsTheVariables)
{
    Session session;
    EXPECT_EQ(session.run({"exec", "-e", "LEVEL=3", "--", "ls", "", "-l"}), 0);
    EXPECT_THAT(session.startedArguments, ElementsAre("/windows/wsl.exe", "-d", "kelp_hub", "--exec", "ls", "", "-l"));
    EXPECT_THAT(session.startedEnvironment, ElementsAre(Pair("LD_LIBRARY_PATH", "/runtime"), Pair("LEVEL", "3"),
                                                        Pair("WSLENV", "LD_LIBRARY_PATH:LEVEL")));
    EXPECT_EQ(session.out, "");
    EXPECT_EQ(session.error, "");
}

TEST(Exec, InheritedListKeepsWorking)
{
    Session session;
    setVariable("WSLENV", "MINE/u");
    session.run({"exec", "-e", "A=1", "--", "ls"});
    EXPECT_EQ(session.startedEnvironment.at("WSLENV"), "MINE/u:A:LD_LIBRARY_PATH");
}

TEST(Exec, ListGivenOnTheCommandLineStandsAsItIs)
{
    Session session;
    setVariable("WSLENV", "MINE/u");
    session.run({"exec", "-e", "WSLENV=X", "-e", "A=1", "--", "ls"});
    EXPECT_EQ(session.startedEnvironment.at("WSLENV"), "X");
}

TEST(Exec, FlagIsInTheListAndNotInTheName)
{
    Session session;
    session.run({"exec", "-e", "DIR/p=C:\\x", "--", "ls"});
    EXPECT_EQ(session.startedEnvironment.at("DIR"), "C:\\x");
    EXPECT_FALSE(session.startedEnvironment.contains("DIR/p"));
    EXPECT_EQ(session.startedEnvironment.at("WSLENV"), "DIR/p:LD_LIBRARY_PATH");
}

TEST(Exec, DockerGetsOptionsInFrontOfTheContainer)
{
    Session session;
    session.run({"exec", "--docker", "--container", "c", "-e", "A=1", "--", "ls", "-l"});
    EXPECT_THAT(session.startedArguments, ElementsAre("/usr/bin/docker", "exec", "-i", "-e", "A=1", "-e",
                                                      "LD_LIBRARY_PATH=/runtime", "c", "ls", "-l"));
    EXPECT_THAT(session.startedEnvironment, IsEmpty());
}

TEST(Exec, DockerGetsATerminalWhenEverythingIsOne)
{
    Session session;
    session.interactive = true;
    session.run({"exec", "--docker", "--", "sh"});
    EXPECT_EQ(session.startedArguments.at(2), "-it");
}

TEST(Exec, MissingDockerClientIsTold)
{
    Session session;
    fakeLvm().dockerPath = "";
    EXPECT_EQ(session.run({"exec", "--docker", "--", "ls"}), 1);
    EXPECT_THAT(session.startedArguments, IsEmpty());
    EXPECT_THAT(session.error, HasSubstr("error: DOCKER_NOT_AVAILABLE\n"));
}

TEST(Exec, StatusIsTheProgramsOwn)
{
    for (const std::int32_t status : {1, 2, 67, 127, 254}) {
        Session session;
        session.programStatus = status;
        EXPECT_EQ(session.run({"exec", "--", "ls"}), status);
        EXPECT_EQ(session.error, "");
    }
}

TEST(Exec, FailureOfWslItselfIsTold)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    EXPECT_EQ(session.run({"exec", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_EQ(session.out, "");
    EXPECT_THAT(session.error, HasSubstr("wsl.exe failed"));
    EXPECT_THAT(session.error, HasSubstr("error: WSL_FAILED\n"));
    EXPECT_THAT(session.error, HasSubstr("next step: "));
}

TEST(Exec, FailureOfWslItselfIsAnObjectForPrograms)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.run({"exec", "--json", "--", "ls"});
    EXPECT_EQ(session.json()["error"]["identifier"], "WSL_FAILED");
    EXPECT_EQ(session.error, "");
}

TEST(Exec, DockerHasNoStatusOfItsOwn)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    EXPECT_EQ(session.run({"exec", "--docker", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_EQ(session.error, "");
}

TEST(Exec, SuccessPrintsNoObject)
{
    Session session;
    EXPECT_EQ(session.run({"exec", "--json", "--", "ls"}), 0);
    EXPECT_EQ(session.out, "");
}

} // namespace
