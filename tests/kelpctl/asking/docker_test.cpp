#include "asking/docker.h"

#include "fake_programs.h"

#include <gmock/gmock.h>

namespace {

using namespace kelpctl;

constexpr char engineQuery[] = "docker version --format {{json .}}";
constexpr char containerQuery[] = "docker container inspect --format {{.State.Status}} hub";

TEST(AskDocker, EngineTellsItsVersion)
{
    FakePrograms fake;
    fake.answers[engineQuery] = {
        0, R"({"Client":{"Version":"20.10.24"},"Server":{"Version":"24.0.1","Os":"linux"}})", {}};
    const kelpctl::DockerEngine engine = askEngine(fake.programs, "docker");
    EXPECT_TRUE(engine.reachable());
    EXPECT_EQ(engine.clientVersion, "20.10.24");
    EXPECT_EQ(engine.version, "24.0.1");
    EXPECT_EQ(engine.system, "linux");
}

TEST(AskDocker, EngineThatDoesNotAnswerStillLeavesTheClient)
{
    FakePrograms fake;
    fake.answers[engineQuery] = {1, R"({"Client":{"Version":"20.10.24"},"Server":null})", "Cannot connect"};
    const kelpctl::DockerEngine engine = askEngine(fake.programs, "docker");
    EXPECT_FALSE(engine.reachable());
    EXPECT_EQ(engine.clientVersion, "20.10.24");
    EXPECT_EQ(engine.version, "");
    EXPECT_EQ(engine.answer.error, "Cannot connect");
}

TEST(AskDocker, EngineThatSpeaksOtherwiseHasNoVersion)
{
    FakePrograms fake;
    const std::string deep(1'000'000, '[');
    for (const std::string& text :
         std::vector<std::string>{"", "podman version 4", "[1]", R"({"Client": 3, "Server": [])",
                                  R"({"Server": {"Version": 3}})", "{\"Server\": " + deep}) {
        fake.answers[engineQuery] = {0, text, {}};
        const kelpctl::DockerEngine engine = askEngine(fake.programs, "docker");
        EXPECT_TRUE(engine.reachable());
        EXPECT_EQ(engine.version, "") << text;
    }
}

DockerEngine engineThatSays(const std::string& text)
{
    FakePrograms fake;
    fake.answers[engineQuery] = {0, text, {}};
    return askEngine(fake.programs, "docker");
}

TEST(AskDocker, EngineTellsWhatItIs)
{
    EXPECT_EQ(engineThatSays(R"({"Client":{"ApiVersion":"1.47"},"Server":{"Platform":{"Name":""}}})").product,
              DockerProduct::engine);
    EXPECT_EQ(engineThatSays(R"({"Server":{"Platform":{"Name":"Docker Engine - Community"}}})").product,
              DockerProduct::engine);
    const DockerEngine desktop =
        engineThatSays(R"json({"Server":{"Platform":{"Name":"Docker Desktop 4.34.2 (167172)"}}})json");
    EXPECT_EQ(desktop.product, DockerProduct::desktop);
    EXPECT_EQ(desktop.platform, "Docker Desktop 4.34.2 (167172)");
    EXPECT_EQ(engineThatSays(R"({"Client":{"APIVersion":"5.2.0","OsArch":"windows/amd64"}})").product,
              DockerProduct::podman);
    EXPECT_EQ(engineThatSays(R"({"Client":{"ApiVersion":"1.47"},"Server":{"Components":[{"Name":"Podman Engine"}]}})")
                  .product,
              DockerProduct::podman);
}

TEST(AskDocker, EndpointIsTheFirstLine)
{
    FakePrograms fake;
    const std::string query = "docker context inspect --format {{.Endpoints.docker.Host}}";
    EXPECT_EQ(askEndpoint(fake.programs, "docker"), "");
    fake.answers[query] = {0, "npipe:////./pipe/dockerDesktopLinuxEngine\r\n", {}};
    EXPECT_EQ(askEndpoint(fake.programs, "docker"), "npipe:////./pipe/dockerDesktopLinuxEngine");
    fake.answers[query] = {0, "", {}};
    EXPECT_EQ(askEndpoint(fake.programs, "docker"), "");
}

TEST(AskDocker, ContainerHasAState)
{
    FakePrograms fake;
    EXPECT_EQ(askContainer(fake.programs, "docker", "hub"), ContainerState::unknown);
    fake.answers[engineQuery] = {0, "{}", {}};
    EXPECT_EQ(askContainer(fake.programs, "docker", "hub"), ContainerState::missing);
    fake.answers[containerQuery] = {0, "exited\n", {}};
    EXPECT_EQ(askContainer(fake.programs, "docker", "hub"), ContainerState::stopped);
    fake.answers[containerQuery] = {0, "paused\n", {}};
    EXPECT_EQ(askContainer(fake.programs, "docker", "hub"), ContainerState::paused);
    fake.answers[containerQuery] = {0, "running\n", {}};
    EXPECT_EQ(askContainer(fake.programs, "docker", "hub"), ContainerState::running);
}

} // namespace
