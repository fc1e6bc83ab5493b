// What kelpctl tells of engines that are not Docker's own on this machine: Docker Desktop, podman, one for Windows
// containers, one that starts late, one that cannot pull.
#include "docker_machine.h"
#include "machine.h"
#include "other_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace json = boost::json;
using orb::process::detail::RunResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class OnOtherEngines : public testing::Test {
protected:
    // The client behind the bridge and kelpctl read the same file: the drive of Wine's that stands for the machine is the
    // current one.
    RunResult kelpctl(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(),
                         {KELPCTL_PROGRAM, "--docker", "--release", "r2026b", "--root", utf8(tree.root())});
        return orb::process::detail::run(
            arguments, {{"DOCKER_CONFIG", unixPath(configuration.path())}, {"LANG", "C"}, {"LC_ALL", "C"}});
    }

    json::value object(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "--json");
        return json::parse(kelpctl(std::move(arguments)).standardOutput);
    }

    static std::vector<std::string> findings(const json::value& examined)
    {
        std::vector<std::string> keys;
        for (const json::value& finding : examined.at("result").at("findings").as_array()) {
            const bool problem = finding.at("severity") == "problem";
            keys.push_back((problem ? "!" : "") + std::string(finding.at("identifier").as_string()));
        }
        return keys;
    }

    void installArchive() const
    {
        std::filesystem::copy_file(DockerEngine::archive("kelp_hub_docker.tar.gz"),
                                   tree.archiveFolder() / "kelp_hub_docker.tar.gz");
    }

    void configure(const std::string& text) const { std::ofstream(configuration.path() / "config.json") << text; }

    TemporaryFolder configuration;
    InstallTree tree{"r2026b"};
    DockerEngine docker;
};

TEST_F(OnOtherEngines, DesktopIsToldWithTheSwitchThatTheHubNeeds)
{
    const OtherEngine desktop("desktop");
    installArchive();
    const json::value examined = object({"doctor"});
    EXPECT_THAT(findings(examined), testing::ElementsAre("HOST_NETWORKING_OPTIONAL", "IMAGE_MISSING"));
    const json::value& engine = examined.at("result").at("docker").at("engine");
    EXPECT_EQ(engine.at("product"), "desktop");
    EXPECT_EQ(engine.at("platform"), "Docker Desktop 4.34.2 (167172)");
    const RunResult told = kelpctl({"doctor"});
    EXPECT_EQ(told.status, 0);
    EXPECT_THAT(told.standardOutput, HasSubstr("version 27.2.0 for linux, Docker Desktop 4.34.2 (167172)"));
    EXPECT_THAT(told.standardOutput, HasSubstr("\"Enable host networking\""));
}

TEST_F(OnOtherEngines, StartOnDesktopSaysThatTheHubMayNotBeReached)
{
    const OtherEngine desktop("desktop");
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    const RunResult started = kelpctl({"start"});
    EXPECT_EQ(started.status, 0);
    EXPECT_THAT(started.standardOutput, HasSubstr("The container kelp_hub was started."));
    EXPECT_THAT(started.standardError, HasSubstr("note: The engine is Docker Desktop."));
    EXPECT_THAT(started.standardError, HasSubstr("next step: In Docker Desktop 4.34 or later, switch on "));
    ASSERT_EQ(kelpctl({"stop"}).status, 0);
    const json::value again = object({"start"});
    EXPECT_EQ(again.at("result").at("notes").at(0).at("identifier"), "HOST_NETWORKING_OPTIONAL");
}

TEST_F(OnOtherEngines, StartOnAnEngineOfLinuxHasNothingToSay)
{
    const OtherEngine same("");
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    EXPECT_EQ(object({"start"}).at("result").at("notes"), json::array());
}

TEST_F(OnOtherEngines, PodmanIsToldWhicheverSideItIsOn)
{
    for (const char* mode : {"podman", "podman-engine"}) {
        const OtherEngine podman(mode);
        const json::value examined = object({"doctor"});
        EXPECT_EQ(examined.at("result").at("docker").at("engine").at("product"), "podman") << mode;
        EXPECT_THAT(findings(examined), testing::Contains("DOCKER_IS_PODMAN")) << mode;
    }
}

TEST_F(OnOtherEngines, EngineForWindowsContainersIsAProblem)
{
    const OtherEngine windows("windows");
    EXPECT_THAT(findings(object({"doctor"})), testing::Contains("!DOCKER_RUNS_WINDOWS_CONTAINERS"));
}

TEST_F(OnOtherEngines, OneThatIsJustStartingIsWaitedFor)
{
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    {
        const OtherEngine late("late=1000");
        const RunResult failed = kelpctl({"setup", archive});
        EXPECT_EQ(failed.status, 1);
        EXPECT_THAT(failed.standardError, HasSubstr("does not answer.\n"));
        EXPECT_EQ(kelpctl({"setup", archive, "--wait", "1"}).status, 1) << "it was not long enough";
    }
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"setup", archive, "--wait", "60"}, {"start", "--wait", "60"}, {"exec", "--wait", "60", "--", "uname"}}) {
        const OtherEngine late("late=3");
        const RunResult done = kelpctl(command);
        EXPECT_EQ(done.status, 0) << command.front() << done.standardError;
    }
}

TEST_F(OnOtherEngines, WhatIsWrongAfterTheWaitIsNotExplainedByTheWait)
{
    const OtherEngine late("late=3");
    const RunResult failed = kelpctl({"setup", "/no/such/archive.tar", "--wait", "60"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.standardError,
                AllOf(HasSubstr("error: TAR_FILE_NOT_AVAILABLE\n"), Not(HasSubstr("evidence: "))));
}

TEST_F(OnOtherEngines, WhyAPullFailedStandsBesideWhatDockerSaid)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    const OtherEngine limited("pull=limit");
    installArchive();
    const RunResult done = kelpctl({"setup"});
    EXPECT_EQ(done.status, 0);
    EXPECT_THAT(done.standardOutput, HasSubstr("was created from "));
    EXPECT_THAT(done.standardError,
                AllOf(HasSubstr("note: The registry was asked first and gave no image, so the archive was used.\n"
                                "cause: The registry takes no more requests from this address for now.\n"
                                "evidence: "),
                      HasSubstr(" pull -q "),
                      HasSubstr("    standard error: Error response from daemon: toomanyrequests"),
                      HasSubstr("next step: Run \"docker login\"")));
    EXPECT_EQ(kelpctl({"teardown"}).status, 0);
    const json::value note = object({"setup"}).at("result").at("notes").at(0);
    EXPECT_EQ(note.at("identifier"), "PULL_FAILED");
    EXPECT_EQ(note.at("cause").at("identifier"), "PULL_LIMIT");
    EXPECT_THAT(std::string(note.at("evidence").at("error").as_string()), HasSubstr("toomanyrequests"));
}

TEST_F(OnOtherEngines, PullThatFailedInUnknownWordsHasNoCause)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    const OtherEngine odd("pull=the moon is full");
    installArchive();
    const RunResult done = kelpctl({"setup"});
    EXPECT_EQ(done.status, 0);
    EXPECT_THAT(done.standardError,
                AllOf(HasSubstr("note: The registry"), HasSubstr("the moon is full"), Not(HasSubstr("cause: "))));
}

TEST_F(OnOtherEngines, MissingHelperForPasswordsIsToldBeforeAndAfter)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    configure(R"({"credsStore": "of-no-product"})");
    installArchive();
    const OtherEngine refusing("pull=credentials");
    const json::value examined = object({"doctor"});
    EXPECT_THAT(findings(examined), testing::Contains("CREDENTIAL_HELPER_MISSING"));
    EXPECT_EQ(examined.at("result").at("docker").at("missingCredentialHelpers"),
              json::array({"docker-credential-of-no-product"}));
    const json::value note = object({"setup"}).at("result").at("notes").at(0);
    EXPECT_EQ(note.at("cause").at("identifier"), "PULL_CREDENTIALS");
}

// The client of this machine: so it is a note, and no problem.
TEST_F(OnOtherEngines, SomeClientsPullWithoutTheHelper)
{
    const EnvironmentVariable pull("USE_DOCKER_REPOSITORY", "1");
    configure(R"({"credsStore": "of-no-product"})");
    installArchive();
    const OtherEngine same("");
    const json::value done = object({"setup"});
    EXPECT_EQ(done.at("result").at("created"), true);
    EXPECT_EQ(done.at("result").at("notes"), json::array());
}

TEST_F(OnOtherEngines, HelpersAreOfNoInterestWhereNothingIsPulled)
{
    const OtherEngine same("");
    configure(R"({"credHelpers": {"registry.example": "of-no-product"}})");
    EXPECT_THAT(findings(object({"doctor"})), Not(testing::Contains("CREDENTIAL_HELPER_MISSING")));
}

TEST_F(OnOtherEngines, ContextThatDoesNotExistIsNamedWithWhatNamesIt)
{
    const OtherEngine same("");
    const EnvironmentVariable host("DOCKER_HOST");
    const EnvironmentVariable context("DOCKER_CONTEXT", "of-nobody");
    const RunResult told = kelpctl({"doctor"});
    EXPECT_THAT(told.standardOutput, HasSubstr("of-nobody (DOCKER_CONTEXT)"));
    EXPECT_THAT(told.standardOutput,
                HasSubstr("The Docker engine that DOCKER_HOST or DOCKER_CONTEXT names does not answer."));
    EXPECT_THAT(kelpctl({"exec", "--", "true"}).standardError,
                HasSubstr("cause: The Docker engine that DOCKER_HOST or DOCKER_CONTEXT names does not answer.\n"));
}

TEST_F(OnOtherEngines, EndpointIsShownWithWhatDecidesIt)
{
    const OtherEngine same("");
    const json::value context = object({"doctor"}).at("result").at("docker").at("context");
    EXPECT_EQ(context.at("source"), "DOCKER_HOST");
    EXPECT_EQ(context.at("chosen"), DOCKER_ENGINE);
    EXPECT_EQ(context.at("endpoint"), DOCKER_ENGINE);
}

} // namespace
