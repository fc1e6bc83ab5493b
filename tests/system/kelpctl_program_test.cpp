// The program kelpctl as a whole, with real archives and real Linux programs behind it.
#include "docker_machine.h"
#include "machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

RunResult kelpctl(const InstallTree& tree, std::vector<std::string> arguments, const std::string& input = {})
{
    const std::vector<std::string> front = {KELPCTL_PROGRAM, "--root", utf8(tree.root())};
    arguments.insert(arguments.begin(), front.begin(), front.end());
    RunOptions options;
    bool given = false;
    if (!input.empty()) {
        options.setInputHandler([&] { return std::exchange(given, true) ? std::string() : input; });
    }
    return orb::process::detail::run(arguments, {}, {}, false, options);
}

std::string withoutCarriageReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

class KelpctlOnWsl : public testing::Test {
protected:
    ~KelpctlOnWsl() override { wsl.clear(); }

    RunResult kelpctl(std::vector<std::string> arguments, const std::string& input = {}) const
    {
        arguments.insert(arguments.begin(), {"--wsl", "--release", "R2026b"});
        return ::kelpctl(tree, std::move(arguments), input);
    }

    InstallTree tree;
    Wsl wsl;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
};

TEST_F(KelpctlOnWsl, CheckPrintsTheGatewaysAnswer)
{
    const RunResult works = kelpctl({"check"});
    EXPECT_EQ(withoutCarriageReturns(works.standardOutput), "0\n");
    EXPECT_EQ(works.status, 0);
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "status=1");
    EXPECT_EQ(withoutCarriageReturns(kelpctl({"check"}).standardOutput), "-3\n");
}

TEST_F(KelpctlOnWsl, SetupExecAndTeardownDoTheMainJob)
{
    tree.install();
    EXPECT_EQ(kelpctl({"setup"}).status, 0);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
    const RunResult uname = kelpctl({"exec", "--", "uname"});
    EXPECT_EQ(uname.status, 0);
    EXPECT_EQ(uname.standardOutput, "Linux\n");
    EXPECT_EQ(uname.standardError, "");
    EXPECT_EQ(kelpctl({"teardown"}).status, 0);
    EXPECT_THAT(wsl.distributions(), IsEmpty());
    EXPECT_TRUE(temporaryDirectoryIsClean(temporary.path()));
}

TEST_F(KelpctlOnWsl, SetupTakesAnArchive)
{
    EXPECT_EQ(kelpctl({"setup", utf8(hubArchive())}).status, 0);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2026b"));
}

TEST_F(KelpctlOnWsl, ProvisionAndRemoveTakeANameOfTheirOwn)
{
    EXPECT_EQ(kelpctl({"provision", "--archive", utf8(hubArchive()), "--name", "mine"}).status, 0);
    EXPECT_THAT(wsl.distributions(), ElementsAre("mine"));
    EXPECT_EQ(kelpctl({"remove", "mine"}).status, 0);
    EXPECT_THAT(wsl.distributions(), IsEmpty());
    const RunResult again = kelpctl({"remove", "mine"});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.standardError, HasSubstr("WSL_E_DISTRO_NOT_FOUND"));
}

TEST_F(KelpctlOnWsl, AProgramInsideGetsArgumentsEnvironmentAndInputUnchanged)
{
    tree.install();
    ASSERT_EQ(kelpctl({"setup"}).status, 0);
    EXPECT_EQ(kelpctl({"exec", "--", "printf", "[%s]", "a b", "", "--json", "\"q\"", "é漢字"}).standardOutput,
              "[a b][][--json][\"q\"][é漢字]");
    EXPECT_EQ(
        kelpctl({"exec", "-e", "A=1 2", "-e", "B==", "--", "sh", "-c", "printf %s,%s \"$A\" \"$B\""}).standardOutput,
        "1 2,=");
    EXPECT_EQ(kelpctl({"exec", "--", "cat"}, "input \xff\r\n\n").standardOutput, "input \xff\r\n\n");
}

TEST_F(KelpctlOnWsl, TheStatusIsTheProgramsOwn)
{
    tree.install();
    ASSERT_EQ(kelpctl({"setup"}).status, 0);
    for (const int status : {0, 1, 2, 42, 254}) {
        EXPECT_EQ(kelpctl({"exec", "--", "sh", "-c", "exit " + std::to_string(status)}).status, status);
    }
}

TEST_F(KelpctlOnWsl, AnErrorHasTheTextTheIdentifierAndANextStep)
{
    const std::string missing = utf8(temporary.path() / "missing.tar.gz");
    const RunResult failed = kelpctl({"setup", missing});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.standardOutput, "");
    EXPECT_THAT(failed.standardError, HasSubstr("WSL_CANNOT_IMPORT_TAR_FILE"));
    EXPECT_THAT(failed.standardError, HasSubstr(missing));
    EXPECT_THAT(failed.standardError, HasSubstr("Wsl/ERROR_FILE_NOT_FOUND"));
}

TEST_F(KelpctlOnWsl, ExecWithoutTheDistributionLeadsToSetup)
{
    const RunResult failed = kelpctl({"exec", "--", "uname"});
    EXPECT_NE(failed.status, 0);
    EXPECT_THAT(failed.standardOutput, HasSubstr("Wsl/Service/WSL_E_DISTRO_NOT_FOUND"))
        << "as wsl.exe said it, in UTF-8";
    EXPECT_THAT(failed.standardError, HasSubstr("error: WSL_FAILED\n"));
    EXPECT_THAT(failed.standardError, HasSubstr("cause: There is no distribution kelp_hub_R2026b.\n"));
    EXPECT_THAT(failed.standardError, HasSubstr("--release R2026b setup\"."));
}

TEST_F(KelpctlOnWsl, ExecDoesNotMissADistributionThatIsBeingInstalled)
{
    tree.install();
    const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "3000");
    std::future<RunResult> setup = std::async(std::launch::async, [this] { return kelpctl({"setup"}); });
    while (wsl.run({"--list", "--all", "-q"}).standardOutput.empty()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    const RunResult failed = kelpctl({"exec", "--", "uname"});
    EXPECT_THAT(failed.standardError, HasSubstr("cause: The distribution is being installed, removed or converted.\n"));
    EXPECT_EQ(setup.get().status, 0);
}

TEST_F(KelpctlOnWsl, ACauseIsFoundInAForeignLanguageToo)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "localised");
    const RunResult failed = kelpctl({"setup", "missing.tar"});
    EXPECT_THAT(failed.standardError, HasSubstr("cause: WSL does not find the archive.\n"));
    EXPECT_THAT(failed.standardError, HasSubstr("    code: Wsl/ERROR_FILE_NOT_FOUND\n"));
}

TEST_F(KelpctlOnWsl, AWslThatIsNotInstalledIsToldInAnyLanguage)
{
    for (const char* mode : {"not-installed-stderr@list", "not-installed-stdout=50@list"}) {
        // Only for the listing: the library would look for another wsl.exe if the version failed as well.
        const EnvironmentVariable variable("WSL_STAND_IN_MODE", mode);
        EXPECT_THAT(kelpctl({"check"}).standardError,
                    HasSubstr("cause: The Windows Subsystem for Linux is not installed.\n"))
            << mode;
    }
}

TEST_F(KelpctlOnWsl, SetupSaysWhatItDid)
{
    tree.install();
    EXPECT_THAT(kelpctl({"setup"}).standardOutput, HasSubstr("The distribution kelp_hub_R2026b was created from "));
    EXPECT_EQ(withoutCarriageReturns(kelpctl({"setup"}).standardOutput),
              "The distribution kelp_hub_R2026b exists already; nothing was created.\n");
    const auto again = boost::json::parse(kelpctl({"--json", "setup"}).standardOutput);
    EXPECT_EQ(again.at("result").at("created"), false);
}

// A name of its own: under Wine all tests share the registry.
TEST_F(KelpctlOnWsl, ADistributionWhoseDiskIsGoneIsNoSuccessAndHasAWayOut)
{
    tree.install();
    const std::vector<std::string> setup = {"--wsl", "--release", "Rgone", "setup"};
    ASSERT_EQ(::kelpctl(tree, setup).status, 0);
    {
        const LostDisk lost("kelp_hub_Rgone", temporary.path());
        const RunResult failed = ::kelpctl(tree, setup);
        EXPECT_EQ(failed.status, 1);
        EXPECT_EQ(failed.standardOutput, "");
        EXPECT_THAT(failed.standardError, HasSubstr("error: DISK_GONE\n"));
        EXPECT_THAT(failed.standardError, HasSubstr("ext4.vhdx\n"));
        EXPECT_THAT(failed.standardError, HasSubstr(" remove kelp_hub_Rgone\", "));
        EXPECT_THAT(failed.standardError, HasSubstr(" --release Rgone setup\", "));
    }
    EXPECT_EQ(::kelpctl(tree, {"--wsl", "--release", "Rgone", "remove", "kelp_hub_Rgone"}).status, 0);
    EXPECT_EQ(::kelpctl(tree, setup).status, 0);
}

TEST_F(KelpctlOnWsl, AProgramThatIsMissingInsideIsTold)
{
    tree.install();
    ASSERT_EQ(kelpctl({"setup"}).status, 0);
    const RunResult missing = kelpctl({"exec", "--", "no-such-program"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.standardError, HasSubstr("cause: The environment has no program no-such-program.\n"));
    const RunResult own = kelpctl({"exec", "--", "false"});
    EXPECT_EQ(own.status, 1);
    EXPECT_EQ(own.standardError, "");
}

TEST_F(KelpctlOnWsl, ExecAsAnObjectHoldsTheProgramsOutput)
{
    tree.install();
    ASSERT_EQ(kelpctl({"setup"}).status, 0);
    const RunResult result = kelpctl({"--json", "exec", "--", "sh", "-c", "echo out; echo err >&2; exit 5"});
    EXPECT_EQ(result.status, 5);
    const auto object = boost::json::parse(result.standardOutput);
    EXPECT_EQ(object.at("ok"), true);
    EXPECT_EQ(object.at("result"), boost::json::parse(R"({"status": 5, "output": "out\n", "error": "err\n"})"));
}

TEST_F(KelpctlOnWsl, JsonIsOneObjectAlsoForErrors)
{
    const auto good = boost::json::parse(kelpctl({"--json", "check"}).standardOutput);
    EXPECT_EQ(good.at("ok"), true);
    EXPECT_EQ(good.at("result"), 0);
    const auto bad = boost::json::parse(kelpctl({"--json", "setup", "missing.tar.gz"}).standardOutput);
    EXPECT_EQ(bad.at("ok"), false);
    EXPECT_EQ(bad.at("error").at("identifier"), "WSL_CANNOT_IMPORT_TAR_FILE");
}

TEST_F(KelpctlOnWsl, PrefixPrintsWhatTheLibraryReturns)
{
    const std::string text = withoutCarriageReturns(kelpctl({"prefix"}).standardOutput);
    EXPECT_THAT(text, HasSubstr(" -d kelp_hub_R2026b --exec "));
    const std::string vector = withoutCarriageReturns(kelpctl({"prefix", "--vector"}).standardOutput);
    EXPECT_THAT(vector, testing::EndsWith("\n-d\nkelp_hub_R2026b\n--exec\n"));
}

TEST_F(KelpctlOnWsl, TheLogHoldsTheStepsAndNoSecret)
{
    tree.install();
    const std::filesystem::path log = temporary.path() / "log";
    ASSERT_EQ(kelpctl({"setup", "--log", "detail", "--log-file", utf8(log)}).status, 0);
    ASSERT_EQ(
        kelpctl({"exec", "--log", "detail", "--log-file", utf8(log), "-e", "PASSWORD=tr0ub4dor", "--", "true"}).status,
        0);
    std::ifstream file(log);
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_THAT(content, HasSubstr("orb:lvm:wsl"));
    EXPECT_THAT(content, HasSubstr("importFromTarIfNecessary: attempt to import distro"));
    EXPECT_THAT(content, Not(HasSubstr("tr0ub4dor")));
}

TEST_F(KelpctlOnWsl, WrongUsageEndsWithTwo)
{
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{
             {}, {"no-such-command"}, {"check", "--no-such-flag"}, {"exec"}, {"exec", "-e", "=1", "--", "true"}}) {
        const RunResult result = kelpctl(wrong);
        EXPECT_EQ(result.status, 2);
        EXPECT_FALSE(result.standardError.empty());
    }
}

class KelpctlOnDocker : public testing::Test {
protected:
    RunResult kelpctl(std::vector<std::string> arguments, const std::string& input = {}) const
    {
        arguments.insert(arguments.begin(), {"--docker", "--release", "r2026b"});
        return ::kelpctl(tree, std::move(arguments), input);
    }

    InstallTree tree{"r2026b"};
    DockerEngine docker;
};

std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string written(const std::filesystem::path& file, const std::string& bytes)
{
    std::ofstream(file, std::ios::binary) << bytes;
    return utf8(file);
}

// What is said of an archive beforehand is what the backend says when it is forced to use it.
TEST_F(KelpctlOnWsl, ArchiveThatIsRefusedWouldHaveFailed)
{
    const std::string hub = bytesOf(hubArchive());
    for (const std::string& archive : {written(temporary.path() / "cut.tar.gz", hub.substr(0, hub.size() / 2)),
                                       written(temporary.path() / "letter.tar.gz", "a letter\n"),
                                       utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}) {
        EXPECT_THAT(kelpctl({"setup", archive}).standardError, HasSubstr("error: ARCHIVE_REFUSED\ncause: "));
        EXPECT_THAT(kelpctl({"setup", archive, "--force"}).standardError,
                    HasSubstr("error: WSL_CANNOT_IMPORT_TAR_FILE\n"))
            << archive;
        EXPECT_THAT(wsl.distributions(), IsEmpty());
    }
}

TEST_F(KelpctlOnDocker, ArchiveThatIsRefusedWouldHaveFailed)
{
    const std::string image = bytesOf(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    const TemporaryFolder folder;
    for (const std::string& archive : {written(folder.path() / "cut.tar.gz", image.substr(0, image.size() / 2)),
                                       utf8(hubArchive()), utf8(DockerEngine::archive("other_image.tar.gz"))}) {
        EXPECT_THAT(kelpctl({"setup", archive}).standardError, HasSubstr("error: ARCHIVE_REFUSED\ncause: "));
        EXPECT_EQ(kelpctl({"setup", archive, "--force"}).status, 1) << archive;
    }
}

TEST_F(KelpctlOnDocker, ArchiveOfAnImageIsReadAsTheEngineReadsIt)
{
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    EXPECT_THAT(kelpctl({"archive", archive}).standardOutput,
                HasSubstr("kelp_hub_r2026b:latest: linux/amd64, names a program to run"));
    EXPECT_EQ(kelpctl({"archive", archive}).status, 0);
    EXPECT_EQ(kelpctl({"archive", utf8(hubArchive())}).status, 1);
}

TEST_F(KelpctlOnDocker, SetupStartExecStopAndTeardownDoTheMainJob)
{
    EXPECT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    EXPECT_THAT(docker.images(), ElementsAre("kelp_hub_r2026b:latest"));
    EXPECT_EQ(kelpctl({"start"}).status, 0);
    EXPECT_EQ(kelpctl({"start"}).status, 1) << "it runs already";
    EXPECT_EQ(kelpctl({"exec", "--", "uname"}).standardOutput, "Linux\n");
    EXPECT_EQ(kelpctl({"stop"}).status, 0);
    EXPECT_EQ(kelpctl({"teardown"}).status, 0);
    EXPECT_THAT(docker.images(), IsEmpty());
}

TEST_F(KelpctlOnDocker, AProgramInsideGetsEnvironmentInputAndStatusUnchanged)
{
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    ASSERT_EQ(kelpctl({"start"}).status, 0);
    EXPECT_THAT(kelpctl({"exec", "-e", "GREETING=grüß dich, 漢字", "--", "/opt/vrun/korvane/bin/hub"}).standardOutput,
                testing::AllOf(HasSubstr("hub: GREETING=grüß dich, 漢字\n"),
                               HasSubstr("/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64")));
    EXPECT_EQ(kelpctl({"exec", "--", "cat"}, "input \xff\r\n\n").standardOutput, "input \xff\r\n\n");
    EXPECT_EQ(kelpctl({"exec", "--", "sh", "-c", "exit 42"}).status, 42);
}

TEST_F(KelpctlOnDocker, AMissingArchiveIsExplained)
{
    const RunResult failed = kelpctl({"setup"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.standardError, HasSubstr("TAR_FILE_NOT_AVAILABLE"));
    EXPECT_THAT(failed.standardError, HasSubstr("kelp_hub_docker.tar"));
}

TEST_F(KelpctlOnDocker, ExecTellsDockersFailuresFromTheProgramsStatus)
{
    EXPECT_THAT(kelpctl({"exec", "--", "uname"}).standardError, HasSubstr("cause: There is no container kelp_hub.\n"));
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    ASSERT_EQ(kelpctl({"start"}).status, 0);
    const RunResult own = kelpctl({"exec", "--", "false"});
    EXPECT_EQ(own.status, 1);
    EXPECT_EQ(own.standardError, "");
    const RunResult missing = kelpctl({"exec", "--", "no-such-program"});
    EXPECT_TRUE(missing.status == 126 || missing.status == 127) << missing.status;
    EXPECT_THAT(missing.standardError, HasSubstr("error: DOCKER_OR_PROGRAM_FAILED\n"));
    docker.run({"stop", "-t", "0", "kelp_hub"});
    EXPECT_THAT(kelpctl({"exec", "--", "uname"}).standardError,
                HasSubstr("cause: The container kelp_hub does not run.\n"));
}

TEST_F(KelpctlOnDocker, WhatIsNotThereCannotBeRemoved)
{
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"teardown"}, {"remove", "typo"}, {"stop", "--container", "typo"}}) {
        const RunResult failed = kelpctl(command);
        EXPECT_EQ(failed.status, 1) << command.front();
        EXPECT_THAT(failed.standardError, HasSubstr("cause: There is no ")) << command.front();
    }
}

TEST_F(KelpctlOnDocker, AnImageWithoutAProgramIsExplainedAndTheAdviceWorks)
{
    const std::string archive = utf8(hubArchive());
    ASSERT_EQ(kelpctl({"provision", "--archive", archive, "--name", "bare", "--root-fs"}).status, 0);
    EXPECT_THAT(kelpctl({"start", "--image", "bare"}).standardError,
                HasSubstr("cause: The image bare names no program to run"));
    kelpctl({"stop"});
    const EnvironmentVariable extra("AUX_DOCKER_ARGS", "--entrypoint sh");
    EXPECT_EQ(kelpctl({"start", "--image", "bare"}).status, 0);
    EXPECT_EQ(kelpctl({"exec", "--", "uname"}).standardOutput, "Linux\n");
}

TEST_F(KelpctlOnDocker, APausedContainerIsTold)
{
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    ASSERT_EQ(kelpctl({"start"}).status, 0);
    ASSERT_EQ(docker.run({"pause", "kelp_hub"}).status, 0);
    EXPECT_THAT(kelpctl({"exec", "--", "true"}).standardError, HasSubstr("cause: The container kelp_hub is paused.\n"));
    EXPECT_THAT(kelpctl({"start"}).standardError, HasSubstr("cause: The container kelp_hub is paused.\n"));
    docker.run({"unpause", "kelp_hub"});
}

TEST_F(KelpctlOnDocker, AStartThatFailsTellsWhy)
{
    EXPECT_THAT(kelpctl({"start"}).standardError, HasSubstr("cause: There is no image kelp_hub_r2026b.\n"));
    ASSERT_EQ(kelpctl({"setup", utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))}).status, 0);
    ASSERT_EQ(kelpctl({"start"}).status, 0);
    const RunResult again = kelpctl({"start"});
    EXPECT_THAT(again.standardError, HasSubstr("cause: The container kelp_hub runs already.\n"));
    EXPECT_THAT(again.standardError, HasSubstr("    status: 125 (0x0000007D)\n"));
    docker.run({"stop", "-t", "0", "kelp_hub"});
    EXPECT_THAT(kelpctl({"start"}).standardError, HasSubstr("cause: A container kelp_hub exists already"));
}

TEST_F(KelpctlOnDocker, AnEngineThatDoesNotAnswerIsTheCauseOfEverything)
{
    const EnvironmentVariable host("DOCKER_HOST", "tcp://127.0.0.1:1");
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"setup", archive}, {"teardown"}, {"start"}, {"stop"}, {"remove"}, {"exec", "--", "true"}}) {
        const RunResult failed = kelpctl(command);
        EXPECT_NE(failed.status, 0) << command.front();
        EXPECT_THAT(failed.standardError,
                    HasSubstr("cause: The Docker engine that DOCKER_HOST or DOCKER_CONTEXT names"))
            << command.front();
        EXPECT_THAT(failed.standardError, HasSubstr("next step: Start that engine")) << command.front();
    }
}

} // namespace
