// kelpctl on a terminal, and in a shell.
#include "machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using orb::process::detail::run;
using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// As a word of a shell's command line.
std::string quoted(const std::string& word)
{
    return "'" + word + "'";
}

class Terminal : public testing::Test {
protected:
    ~Terminal() override { wsl.clear(); }

    std::string commandLine(const std::string& arguments) const
    {
        return quoted(KELPCTL_PROGRAM) + " --wsl --release R1 --root " + quoted(utf8(tree.root())) + " " + arguments;
    }

    // Everything that is to be seen on a terminal of its own.
    static std::string screen(const std::string& shellCommand)
    {
        const RunResult result = run({"script", "-qefc", shellCommand, "/dev/null"}, {{"TERM", "xterm"}});
        return result.standardOutput;
    }

    InstallTree tree;
    Wsl wsl;
    TemporaryDirectory temporary;
};

TEST_F(Terminal, ShowsTheProgressOfLongWork)
{
    tree.install();
    const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "2500");
    const std::string seen = screen(commandLine("setup"));
    EXPECT_THAT(seen, HasSubstr("\rkelpctl setup: WSL prepares the disk ... 1 s"));
    EXPECT_THAT(seen, HasSubstr("\rkelpctl setup: WSL prepares the disk ... 2 s"));
    EXPECT_THAT(seen, HasSubstr("The distribution kelp_hub_R1 was created from "));
}

TEST_F(Terminal, NothingElseGetsTheProgress)
{
    tree.install();
    const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "1500");
    EXPECT_THAT(screen(commandLine("setup 2>&1 | cat")), Not(HasSubstr("... 1 s")));
}

TEST_F(Terminal, ShowsColoursUnlessTheUserSaysNo)
{
    EXPECT_THAT(screen(commandLine("setup missing.tar")), HasSubstr("\x1b[1;31merror: \x1b[0m"));
    EXPECT_THAT(screen("NO_COLOR=1 " + commandLine("setup missing.tar")), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(screen("TERM=dumb " + commandLine("setup missing.tar")), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(screen(commandLine("setup missing.tar 2>&1 | cat")), Not(HasSubstr("\x1b[")));
}

// kelpctl in the background of a shell that interrupts it after half a second.
RunResult interruptedRun(const std::string& commandLine)
{
    return run({"bash", "-c", "set -m; " + commandLine + " & sleep 0.7; kill -INT $!; wait $!; exit $?"});
}

TEST_F(Terminal, CtrlCInExecIsForTheProgramInside)
{
    tree.install();
    ASSERT_EQ(run({"sh", "-c", commandLine("setup")}).status, 0);
    // Only kelpctl hears of it here: it waits for the program all the same, and passes its status on.
    const RunResult result = interruptedRun(commandLine("exec -- sh -c \"sleep 2; echo done; exit 9\""));
    EXPECT_EQ(result.status, 9);
    EXPECT_EQ(result.standardOutput, "done\n");
}

TEST_F(Terminal, CtrlCEndsTheWorkAndTellsWhatMayBeLeft)
{
    tree.install();
    const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "60000");
    const auto begin = std::chrono::steady_clock::now();
    const RunResult result = interruptedRun(commandLine("setup"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds{10});
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_THAT(result.standardError, HasSubstr("kelpctl setup: Interrupted.\nerror: INTERRUPTED\n"
                                                "cause: WSL may still be importing kelp_hub_R1 into "));
    EXPECT_THAT(result.standardError, HasSubstr("next step: Run \"kelpctl --wsl --root "));
    EXPECT_THAT(result.standardError,
                HasSubstr("doctor\": it shows what came of that. When nothing did, delete that folder."));
}

TEST_F(Terminal, NothingStartsAfterCtrlC)
{
    tree.install();
    ASSERT_EQ(run({"sh", "-c", commandLine("setup")}).status, 0);
    wsl.takeCalls();
    const EnvironmentVariable hang("WSL_STAND_IN_MODE", "hang@version");
    const RunResult result = interruptedRun(commandLine("teardown"));
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.standardError, HasSubstr("nothing was left behind"));
    for (const std::string& call : wsl.takeCalls()) {
        EXPECT_THAT(call, Not(HasSubstr("--unregister")));
    }
}

TEST_F(Terminal, EachCommandEndsOnCtrlC)
{
    const EnvironmentVariable hang("WSL_STAND_IN_MODE", "hang");
    for (const char* command : {"check", "prefix", "exec -- true", "doctor", "exec --json -- true", "check --json"}) {
        EXPECT_EQ(interruptedRun(commandLine(command)).status, 130) << command;
    }
}

TEST_F(Terminal, CapturedProgramThatIsInterruptedIsAnObjectToo)
{
    tree.install();
    ASSERT_EQ(run({"sh", "-c", commandLine("setup")}).status, 0);
    const RunResult result = interruptedRun(commandLine("exec --json -- sleep 30"));
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.standardOutput, HasSubstr(R"("error":{"identifier":"INTERRUPTED")"));
    EXPECT_THAT(result.standardOutput, HasSubstr("PROGRAM_LEFT"));
}

TEST_F(Terminal, AfterCtrlCTheSameCommandGoesOn)
{
    tree.install();
    {
        const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "60000");
        ASSERT_EQ(interruptedRun(commandLine("setup")).status, 130);
    }
    run({"sh", "-c", commandLine("remove kelp_hub_R1")});
    EXPECT_EQ(run({"sh", "-c", commandLine("setup")}).status, 0);
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R1"));
}

TEST_F(Terminal, InterruptionIsAnObjectForPrograms)
{
    tree.install();
    const EnvironmentVariable slow("WSL_STAND_IN_IMPORT_MS", "60000");
    const RunResult result = interruptedRun(commandLine("setup --json"));
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.standardOutput, HasSubstr(R"("error":{"identifier":"INTERRUPTED")"));
    // The shell has a word of its own there.
    EXPECT_THAT(result.standardError, Not(HasSubstr("INTERRUPTED")));
}

// What bash offers for the words.
std::string bashOffers(const std::string& words, int index)
{
    const std::string script = "PATH=" + quoted(utf8(std::filesystem::path(KELPCTL_PROGRAM).parent_path())) +
                               ":$PATH; source <(kelpctl completion bash); COMP_WORDS=(kelpctl " + words +
                               "); COMP_CWORD=" + std::to_string(index) + "; _kelpctl; echo \"${COMPREPLY[*]}\"";
    const RunResult result = run({"bash", "--norc", "-c", script});
    return result.status == 0 ? result.standardOutput : result.standardError;
}

TEST(Bash, CompletesCommandsAndFlags)
{
    EXPECT_EQ(bashOffers("te", 1), "teardown\n");
    EXPECT_EQ(bashOffers("--docker st", 2), "start stop\n");
    EXPECT_EQ(bashOffers("provision --roo", 2), "--root --root-fs\n");
    EXPECT_EQ(bashOffers("completion ''", 2), "bash powershell\n");
    EXPECT_EQ(bashOffers("setup ''", 2), "\n");
}

TEST(Language, IsTheSystems)
{
    const InstallTree tree;
    std::filesystem::copy(RESOURCES, tree.root() / "resources");
    const std::vector<std::string> command = {KELPCTL_PROGRAM, "--docker", "--root", utf8(tree.root()), "start"};
    const ScriptedPrograms programs;
    programs.add("where", "", 1);
    const std::string german =
        run(command, {{"LANG", "de_DE.UTF-8"}, {"LC_ALL", ""}, {"LC_MESSAGES", ""}}).standardError;
    EXPECT_THAT(german, HasSubstr("Der Docker-Client docker.exe wurde im Suchpfad nicht gefunden."));
    EXPECT_THAT(german, HasSubstr("next step: Installieren Sie Docker"));
    const std::string english = run(command, {{"LANG", "C.UTF-8"}, {"LC_ALL", ""}, {"LC_MESSAGES", ""}}).standardError;
    EXPECT_THAT(english, HasSubstr("The Docker client docker.exe was not found"));
}

} // namespace
