#include "fake_lvm.h"
#include "session.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void failToClear()
{
    logAs("orb:lvm:common", 512,
          "clearDistroImage: distro's clear unsuccessful cout = Nothing there.\r\n"
          "Fehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\r\n");
    logAs("orb:lvm:common", 512, "clearDistroImage: distro's clear unsuccessful cerr = ");
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

TEST(Removal, FailureThatIsOnlyLoggedIsFoundOut)
{
    fakeLvm().duringClear = failToClear;
    for (const char* command : {"remove", "teardown"}) {
        Session session;
        EXPECT_EQ(session.run({command}), 1);
        EXPECT_THAT(session.error, HasSubstr("error: REMOVAL_FAILED\n"
                                             "evidence: Nothing there.\n"
                                             "    Fehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n"
                                             "next step: There is nothing of that name"));
    }
}

TEST(Removal, FailureWithoutAWordIsAFailure)
{
    fakeLvm().duringClear = [] {
        logAs("orb:lvm:common", 512, "clearDistroImage: distro's clear unsuccessful cout = ");
        logAs("orb:lvm:common", 512, "clearDistroImage: distro's clear unsuccessful cerr = ");
    };
    Session session;
    EXPECT_EQ(session.run({"remove", "--json"}), 1);
    EXPECT_EQ(session.json()["error"]["identifier"], "REMOVAL_FAILED");
    EXPECT_TRUE(session.json()["error"]["arguments"].empty());
}

TEST(Removal, OtherChannelsAndLevelsAreNoFailure)
{
    fakeLvm().duringClear = [] {
        logAs("orb:lvm:wsl", 512, "listing = failed");
        logAs("orb:lvm:common", 8, "clearDistroImage: COMMON");
    };
    Session session;
    EXPECT_EQ(session.run({"--log", "detail", "remove"}), 0);
}

TEST(Removal, LogShowsTheFailureAsWell)
{
    fakeLvm().duringClear = failToClear;
    Session session;
    EXPECT_EQ(session.run({"--log", "error", "remove"}), 1);
    EXPECT_THAT(session.error, HasSubstr(" orb:lvm:common error "));
    EXPECT_THAT(session.error, HasSubstr("error: REMOVAL_FAILED\n"));
}

TEST(Removal, FailureOfOneRunIsNotThatOfTheNext)
{
    fakeLvm().duringClear = failToClear;
    Session session;
    EXPECT_EQ(session.run({"remove"}), 1);
    fakeLvm().duringClear = [] {};
    EXPECT_EQ(session.run({"remove"}), 0);
    EXPECT_EQ(session.error, "");
}

TEST(Removal, MissingDockerClientIsTold)
{
    fakeLvm().dockerPath = "";
    for (const char* command : {"remove", "teardown", "start", "stop"}) {
        Session session;
        EXPECT_EQ(session.run({"--docker", command}), 1);
        EXPECT_THAT(session.error, HasSubstr("error: DOCKER_NOT_AVAILABLE\n"));
    }
    EXPECT_TRUE(fakeLvm().calls.empty());
}

} // namespace
