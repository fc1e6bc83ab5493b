// What every command prints with --json, held to docs/use/kelpctl.schema.json.
#include "docker_machine.h"
#include "machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;

RunResult checked(const std::string& lines)
{
    RunOptions options;
    bool given = false;
    options.setInputHandler([&] { return std::exchange(given, true) ? std::string() : lines; });
    return orb::process::detail::run({CHECK_SCHEMA, KELPCTL_SCHEMA}, {}, {}, false, options);
}

class Schema : public testing::Test {
protected:
    Schema() { tree.install(); }
    ~Schema() override { wsl.clear(); }

    // Runs kelpctl and keeps what it printed.
    void run(const std::vector<std::string>& arguments, int status, const char* backend = "--wsl")
    {
        std::vector<std::string> command = {KELPCTL_PROGRAM,   "--json",    backend, "--root",
                                            utf8(tree.root()), "--release", "r2026b"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const RunResult result = orb::process::detail::run(command);
        const std::string name = arguments.empty() ? "nothing" : arguments.front();
        EXPECT_EQ(result.status, status) << name << ": " << result.standardOutput;
        EXPECT_EQ(std::count(result.standardOutput.begin(), result.standardOutput.end(), '\n'), 1) << name;
        EXPECT_EQ(result.standardError, "") << name;
        printed += result.standardOutput;
    }

    void runOnDocker(const std::vector<std::string>& arguments, int status) { run(arguments, status, "--docker"); }

    void expectValid() const
    {
        const RunResult result = checked(printed);
        EXPECT_EQ(result.status, 0) << result.standardOutput << result.standardError;
    }

    std::string printed;
    InstallTree tree{"r2026b"};
    Wsl wsl;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
};

TEST_F(Schema, FitsEveryCommandOnWsl)
{
    run({"doctor"}, 0);
    run({"archive", utf8(hubArchive())}, 0);
    run({"setup"}, 0);
    run({"setup"}, 0);
    run({"check"}, 0);
    run({"doctor"}, 0);
    run({"start"}, 0);
    run({"stop"}, 0);
    run({"exec", "--", "sh", "-c", "echo out; echo error >&2; exit 3"}, 3);
    run({"prefix"}, 0);
    run({"prefix", "--vector"}, 0);
    run({"env", "-e", "A=B", "--", "x"}, 0);
    run({"provision", "--name", "mine"}, 0);
    run({"remove", "mine"}, 0);
    run({"teardown"}, 0);
    run({"completion", "bash"}, 0);
    run({"complete", "--", "se"}, 0);
    run({"report", utf8(temporary.path() / "report.zip")}, 0);
    run({"help", "doctor"}, 0);
    run({"--version"}, 0);
    run({"--help"}, 0);
    expectValid();
}

TEST_F(Schema, FitsEveryFailureOnWsl)
{
    run({}, 2);
    run({"no-such-command"}, 2);
    run({"exec"}, 2);
    run({"archive", "missing.tar.gz"}, 1);
    run({"setup", "missing.tar.gz"}, 1);
    run({"provision", "--archive", "missing.tar.gz"}, 1);
    run({"remove", "nobody"}, 1);
    run({"teardown"}, 1);
    run({"exec", "--", "true"}, 255);
    run({"report", utf8(temporary.path())}, 1);
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "status=1@list");
    run({"check"}, 1);
    run({"doctor"}, 1);
    expectValid();
}

TEST_F(Schema, FitsADoctorWhoseToolHangs)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang");
    run({"doctor", "--time-limit", "1"}, 1);
    expectValid();
}

TEST_F(Schema, FitsOutputThatIsNoText)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "garbage");
    run({"doctor"}, 0);
    expectValid();
}

TEST_F(Schema, FitsEveryCommandOnDocker)
{
    const DockerEngine docker;
    const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
    runOnDocker({"doctor"}, 1);
    runOnDocker({"start"}, 1);
    runOnDocker({"archive", archive}, 0);
    runOnDocker({"setup", utf8(hubArchive())}, 1);
    runOnDocker({"setup", archive}, 0);
    runOnDocker({"start"}, 0);
    runOnDocker({"start"}, 1);
    runOnDocker({"doctor"}, 0);
    runOnDocker({"exec", "--", "uname"}, 0);
    runOnDocker({"exec", "--", "no-such-program"}, 126);
    runOnDocker({"stop"}, 0);
    runOnDocker({"exec", "--", "uname"}, 1);
    runOnDocker({"teardown"}, 0);
    const EnvironmentVariable host("DOCKER_HOST", "unix:///nowhere/docker.sock");
    runOnDocker({"doctor"}, 1);
    runOnDocker({"setup", archive}, 1);
    expectValid();
}

TEST_F(Schema, RefusesWhatItDoesNotDescribe)
{
    for (const char* wrong :
         {R"({"command":"check","ok":true,"result":1,"error":null})", R"({"command":"check","ok":true,"result":0})",
          R"({"command":"check","ok":true,"result":null,"error":null})",
          R"({"command":"check","ok":false,"result":-3,"error":null})",
          R"({"command":"unknown","ok":true,"result":0,"error":null})",
          R"({"command":"doctor","ok":true,"result":{"verdict":"ready"},"error":null})",
          R"({"command":"help","ok":true,"result":{"text":"x","more":1},"error":null})"}) {
        EXPECT_EQ(checked(std::string(wrong) + "\n").status, 1) << wrong;
    }
    EXPECT_EQ(checked("{\"command\":\"check\",\"ok\":true,\"result\":0,\"error\":null}\n").status, 0);
}

} // namespace
