#include "probes.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using kelpctl::askContainer;
using kelpctl::askDistributions;
using kelpctl::askEngine;
using kelpctl::ContainerState;
using kelpctl::Distribution;
using kelpctl::DistributionList;
using kelpctl::distributionTable;
using kelpctl::Programs;
using kelpctl::Run;
using kelpctl::versionNumber;
using orb::process::detail::RunResult;
using testing::IsEmpty;

// Programs that answer by their command line; any other fails.
class Desk {
public:
    std::map<std::string, RunResult> answers;
    std::map<std::string, std::string> environment;
    Programs programs{[this](const auto& arguments, const auto& given, const auto& /*folder*/) {
                          environment = given;
                          return answer(arguments);
                      },
                      {}};

private:
    Run answer(const std::vector<std::string>& arguments)
    {
        std::string line;
        for (const std::string& argument : arguments) {
            line += (line.empty() ? "" : " ") + argument;
        }
        if (line.starts_with("broken")) {
            throw std::runtime_error("cannot start");
        }
        const auto known = answers.find(line);
        return kelpctl::runOf(arguments, known == answers.end() ? RunResult{1, {}, "no"} : known->second);
    }
};

constexpr char engineQuestion[] = "docker version --format {{json .}}";
constexpr char containerQuestion[] = "docker container inspect --format {{.State.Status}} hub";

TEST(Probes, EngineTellsItsVersion)
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

TEST(Probes, EngineThatDoesNotAnswerStillLeavesTheClient)
{
    Desk desk;
    desk.answers[engineQuestion] = {1, R"({"Client":{"Version":"20.10.24"},"Server":null})", "Cannot connect"};
    const kelpctl::DockerEngine engine = askEngine(desk.programs, "docker");
    EXPECT_FALSE(engine.reachable());
    EXPECT_EQ(engine.clientVersion, "20.10.24");
    EXPECT_EQ(engine.version, "");
    EXPECT_EQ(engine.answer.error, "Cannot connect");
}

TEST(Probes, EngineThatSpeaksOtherwiseHasNoVersion)
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

TEST(Probes, ContainerHasAState)
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

TEST(Probes, ProgramThatCannotBeStartedHasNoStatus)
{
    Desk desk;
    const kelpctl::Run answer = kelpctl::ask(desk.programs, {"broken"});
    EXPECT_FALSE(answer.status.has_value());
    EXPECT_FALSE(answer.succeeded());
    EXPECT_EQ(answer.error, "cannot start");
}

TEST(Probes, WslIsAskedForPlainText)
{
    Desk desk;
    kelpctl::ask(desk.programs, {"wsl.exe"});
    EXPECT_EQ(desk.environment.at("WSL_UTF8"), "1");
    EXPECT_EQ(desk.environment.at("WSL_DISABLE_WARNINGS"), "1");
}

TEST(Probes, DistributionsHaveTheirStates)
{
    Desk desk;
    desk.answers["wsl --list -q"] = {0, "kelp_hub\r\nUbuntu\r\n", {}};
    desk.answers["wsl --list --all --verbose"] = {
        0, "  NAME        STATE           VERSION\r\n* kelp_hub    Running         2\r\n  Ubuntu  Stopped 1\r\n", {}};
    const DistributionList list = askDistributions(desk.programs, "wsl");
    EXPECT_TRUE(list.known());
    ASSERT_EQ(list.all.size(), 2U);
    EXPECT_EQ(list.all[0].name, "kelp_hub");
    EXPECT_EQ(list.all[0].state, "Running");
    EXPECT_EQ(list.all[0].version, 2);
    EXPECT_TRUE(list.all[0].isDefault);
    EXPECT_EQ(list.all[1].state, "Stopped");
    EXPECT_EQ(list.all[1].version, 1);
    EXPECT_FALSE(list.all[1].isDefault);
}

TEST(Probes, DistributionsWithoutATableHaveNoState)
{
    Desk desk;
    desk.answers["wsl --list -q"] = {0, "kelp_hub\r\n", {}};
    const DistributionList list = askDistributions(desk.programs, "wsl");
    ASSERT_EQ(list.all.size(), 1U);
    EXPECT_EQ(list.all[0].name, "kelp_hub");
    EXPECT_EQ(list.all[0].state, "");
}

TEST(Probes, NoDistributionsIsNoFailure)
{
    Desk desk;
    desk.answers["wsl --list -q"] = {0, {}, {}};
    const DistributionList list = askDistributions(desk.programs, "wsl");
    EXPECT_TRUE(list.known());
    EXPECT_THAT(list.all, IsEmpty());
}

TEST(Probes, FailedListingIsNotAnEmptyOne)
{
    Desk desk;
    EXPECT_FALSE(askDistributions(desk.programs, "wsl").known());
}

TEST(DistributionTable, KnowsStatesThatAreYetToBeInvented)
{
    const std::vector<Distribution> all = distributionTable("* a Running 2\n  b Exporting 2\n  c Dreaming 1\n");
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[2].state, "Dreaming");
}

TEST(DistributionTable, TakesNoOtherLineForARow)
{
    EXPECT_THAT(distributionTable("  NAME  STATE  VERSION\n\nThere is none\n a b 22\n"), IsEmpty());
}

TEST(VersionNumber, IsFoundInAnyLanguage)
{
    EXPECT_EQ(versionNumber("WSL version: 2.3.24.0\nKernel version: 5.15.153.1-2\n"), "2.3.24.0");
    EXPECT_EQ(versionNumber("WSL-Version: 2.3.24.0"), "2.3.24.0");
    EXPECT_EQ(versionNumber("WSL2 \xE7\x89\x88\xE6\x9C\xAC\xEF\xBC\x9A 2.0.9"), "2.0.9");
    EXPECT_EQ(versionNumber("no number 1.2 ... 3."), "");
    EXPECT_EQ(versionNumber(""), "");
}

} // namespace
