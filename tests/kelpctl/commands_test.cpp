#include "fake_lvm.h"
#include "session.h"

#include "host/configuration.h"
#include "host/install.h"

#include <gmock/gmock.h>

#include <iostream>

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Commands, SetupIsTheGateway)
{
    Session session;
    EXPECT_EQ(session.run({"setup"}), 0);
    EXPECT_EQ(session.run({"setup", "grüße 1.tar"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("gateway setup", "gateway setup [grüße 1.tar]"));
    EXPECT_EQ(session.out, "");
    EXPECT_EQ(session.error, "");
}

TEST(Commands, CheckPrintsZero)
{
    Session session;
    EXPECT_EQ(session.run({"check"}), 0);
    EXPECT_EQ(session.out, "0\n");
    EXPECT_EQ(session.error, "");
}

TEST(Commands, CheckThatFailsPrintsTheNumberAndTheNextStep)
{
    fakeLvm().checkResult = -3;
    Session session;
    EXPECT_EQ(session.run({"check"}), 1);
    EXPECT_EQ(session.out, "-3\n");
    EXPECT_THAT(session.error, HasSubstr("error: WSL_NOT_USABLE\nnext step: "));
    EXPECT_EQ(session.run({"check", "--json"}), 1);
    EXPECT_EQ(session.json()["result"], -3);
    EXPECT_EQ(session.json()["ok"], false);
}

TEST(Commands, ProvisionPassesEverythingOn)
{
    Session session;
    EXPECT_EQ(session.run({"provision"}), 0);
    EXPECT_EQ(session.run({"provision", "--archive", "a", "--name", "n", "--root-fs"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("import [] [] [image]", "import [a] [n] [rootfs]"));
}

TEST(Commands, StandardOutputIsKeptForResults)
{
    fakeLvm().duringImport = [] { std::cout << "ERROR in the pull" << std::endl; };
    std::ostringstream standardOutput;
    std::streambuf* before = std::cout.rdbuf(standardOutput.rdbuf());
    Session session;
    const int status = session.run({"provision", "--json"});
    std::cout.rdbuf(before);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(standardOutput.str(), "");
    EXPECT_EQ(session.error, "ERROR in the pull\n");
    EXPECT_EQ(session.json()["ok"], true);
}

TEST(Commands, ContainerPairPassesNamesOn)
{
    Session session;
    EXPECT_EQ(session.run({"start", "--container", "c", "--image", "i"}), 0);
    EXPECT_EQ(session.run({"start"}), 0);
    EXPECT_EQ(session.run({"stop", "--container", "c"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("start [c] [i]", "start [] []", "stop [c]"));
    EXPECT_EQ(session.error, "");
}

TEST(Commands, ContainerThatDoesNotStartIsAFailure)
{
    fakeLvm().containerStarts = false;
    Session session;
    EXPECT_EQ(session.run({"--docker", "start"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: CONTAINER_NOT_STARTED\nevidence: container kelp_hub\nnext step: "));
}

TEST(Commands, ContainerThatDoesNotStopIsAFailure)
{
    fakeLvm().containerStops = false;
    Session session;
    EXPECT_EQ(session.run({"--docker", "stop", "--container", "c"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: CONTAINER_NOT_STOPPED\nevidence: container c\nnext step: "));
}

TEST(Commands, PrefixPrintsTheLine)
{
    Session session;
    EXPECT_EQ(session.run({"prefix"}), 0);
    EXPECT_EQ(session.out, "/windows/wsl.exe -d kelp_hub --exec \n");
    session.run({"prefix", "--docker", "--container", "c", "--json"});
    EXPECT_EQ(session.json()["result"], "/usr/bin/docker exec c");
}

TEST(Commands, PrefixPrintsTheVector)
{
    Session session;
    EXPECT_EQ(session.run({"prefix", "--vector"}), 0);
    EXPECT_EQ(session.out, "/windows/wsl.exe\n-d\nkelp_hub\n--exec\n");
    session.run({"prefix", "--docker", "--vector", "--json"});
    EXPECT_EQ(session.json()["result"], json::array({"/usr/bin/docker", "exec", "kelp_hub"}));
}

TEST(Commands, EnvPrintsArgumentsAndEnvironment)
{
    Session session;
    EXPECT_EQ(session.run({"env", "-e", "A=1", "--", "x", ""}), 0);
    EXPECT_EQ(session.out, "argument: x\nargument: \nenvironment: A=1\nenvironment: LD_LIBRARY_PATH=/runtime\n"
                           "environment: WSLENV=A:LD_LIBRARY_PATH\n");
    session.run({"env", "--docker", "-e", "A=1", "--json", "--", "x", "y"});
    EXPECT_EQ(session.json()["result"],
              json::parse(R"({"arguments": ["x", "-e", "A=1", "-e", "LD_LIBRARY_PATH=/runtime", "y"],
                              "environment": {"A": "1", "LD_LIBRARY_PATH": "/runtime"}})"));
}

TEST(Commands, VersionIsTheLibrarys)
{
    Session session;
    EXPECT_EQ(session.run({"--version"}), 0);
    EXPECT_EQ(session.out, "kelpctl 1.2.3.4 (Nov 21 2026)\n");
    session.run({"--version", "--json"});
    EXPECT_EQ(session.json()["result"]["version"], "1.2.3.4");
}

TEST(Commands, FlagsBecomeTheHostsConfiguration)
{
    Session session;
    session.run({"prefix", "--root", "/host", "--release", "24a", "--language", "de", "--log", "detail"});
    const foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    EXPECT_EQ(configuration.installationRoot, "/host");
    EXPECT_EQ(configuration.release, "24a");
    EXPECT_EQ(configuration.language, "de");
    EXPECT_EQ(configuration.channelMasks.at("orb"), 520U);
}

TEST(Commands, ConfigurationStaysWithoutFlags)
{
    foundation::core::config::Configuration before;
    before.release = "from the program";
    foundation::core::config::configure(before);
    Session session;
    session.run({"prefix"});
    EXPECT_EQ(foundation::core::config::configuration().release, "from the program");
}

TEST(Commands, ArchiveNameThatIsNotUtf8IsRefused)
{
    Session session;
    EXPECT_EQ(session.run({"setup", "\xFF.tar"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: TEXT_NOT_VALID\n"));
    EXPECT_TRUE(fakeLvm().calls.empty());
}

} // namespace
