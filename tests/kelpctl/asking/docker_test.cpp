#include "asking/docker.h"

#include "desk.h"

#include <gmock/gmock.h>

namespace {

using namespace kelpctl;

constexpr char engineQuestion[] = "docker version --format {{json .}}";
constexpr char containerQuestion[] = "docker container inspect --format {{.State.Status}} hub";

TEST(AskDocker, EngineTellsItsVersion)
{
    Desk desk;
    desk.answers[engineQuestion] = {
        0, R"({"Client":{"Version":"20.10.24"},"Server":{"Version":"24.0.1","Os":"linux"}})", {}};
    const kelpctl::DockerEngine engine = askEngine(desk.programs, "docker");
    EXPECT_TRUE(engine.reachable());
    EXPECT_EQ(engine.clientVersion, "20.10.24");
    EXPECT_EQ(engine.version, "24.0.1");
    EXPECT_EQ(engine.system, "linux");
}

TEST(AskDocker, EngineThatDoesNotAnswerStillLeavesTheClient)
{
    Desk desk;
    desk.answers[engineQuestion] = {1, R"({"Client":{"Version":"20.10.24"},"Server":null})", "Cannot connect"};
    const kelpctl::DockerEngine engine = askEngine(desk.programs, "docker");
    EXPECT_FALSE(engine.reachable());
    EXPECT_EQ(engine.clientVersion, "20.10.24");
    EXPECT_EQ(engine.version, "");
    EXPECT_EQ(engine.answer.error, "Cannot connect");
}

TEST(AskDocker, EngineThatSpeaksOtherwiseHasNoVersion)
{
    Desk desk;
    const std::string deep(1'000'000, '[');
    for (const std::string& text :
         std::vector<std::string>{"", "podman version 4", "[1]", R"({"Client": 3, "Server": [])",
                                  R"({"Server": {"Version": 3}})", "{\"Server\": " + deep}) {
        desk.answers[engineQuestion] = {0, text, {}};
        const kelpctl::DockerEngine engine = askEngine(desk.programs, "docker");
        EXPECT_TRUE(engine.reachable());
        EXPECT_EQ(engine.version, "") << text;
    }
}

TEST(AskDocker, ContainerHasAState)
{
    Desk desk;
    EXPECT_EQ(askContainer(desk.programs, "docker", "hub"), ContainerState::unknown);
    desk.answers[engineQuestion] = {0, "{}", {}};
    EXPECT_EQ(askContainer(desk.programs, "docker", "hub"), ContainerState::missing);
    desk.answers[containerQuestion] = {0, "exited\n", {}};
    EXPECT_EQ(askContainer(desk.programs, "docker", "hub"), ContainerState::stopped);
    desk.answers[containerQuestion] = {0, "paused\n", {}};
    EXPECT_EQ(askContainer(desk.programs, "docker", "hub"), ContainerState::paused);
    desk.answers[containerQuestion] = {0, "running\n", {}};
    EXPECT_EQ(askContainer(desk.programs, "docker", "hub"), ContainerState::running);
}

} // namespace
