#include "commands/exec.h"

#include "fake_lvm.h"
#include "registered.h"
#include "session.h"
#include "temporary_folder.h"
#include "terminal/platform.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <fstream>
#include <utility>

namespace {

using kelpctl::mergedWslenv;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
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
    EXPECT_THAT(session.startedEnvironment,
                ElementsAre(Pair("LD_LIBRARY_PATH", "/runtime"), Pair("LEVEL", "3"),
                            Pair("WSLENV", "LD_LIBRARY_PATH:LEVEL"), Pair("WSL_UTF8", "1")));
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

TEST(Exec, WslUtf8OfTheUserStands)
{
    Session session;
    setVariable("WSL_UTF8", "0");
    session.run({"exec", "--", "ls"});
    EXPECT_FALSE(session.startedEnvironment.contains("WSL_UTF8"));
}

constexpr char listing[] = "/windows/wsl.exe --list -q";
constexpr char table[] = "/windows/wsl.exe --list --all --verbose";

TEST(Exec, MissingDistributionIsTold)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.answers[listing] = {0, "other\r\n", {}};
    EXPECT_EQ(session.run({"--release", "R1", "exec", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_EQ(session.out, "");
    EXPECT_THAT(session.error, HasSubstr("error: WSL_FAILED\n"));
    EXPECT_THAT(session.error, HasSubstr("cause: There is no distribution kelp_hub_R1.\n"));
    EXPECT_THAT(session.error, HasSubstr("next step: Create it with \"kelpctl --release R1 setup\"."));
}

TEST(Exec, DistributionThatIsBeingInstalledIsNotMissing)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.answers[listing] = {0, "", {}};
    session.answers[table] = {0, "  NAME     STATE      VERSION\r\n  kelp_hub Installing 2\r\n", {}};
    EXPECT_EQ(session.run({"exec", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_THAT(session.error, HasSubstr("cause: The distribution is being installed, removed or converted.\n"));
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {
        kelpctl::wslFailureStatus(), "Wsl/Service/WSL_E_DISTRO_NOT_FOUND", {}};
    session.run({"exec", "--json", "--", "ls"});
    EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "WSL_BUSY");
}

TEST(Exec, WslThatCannotListIsTold)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.answers[listing] = {-1, "Fehlercode: Wsl/Service/E_UNEXPECTED", {}};
    EXPECT_EQ(session.run({"exec", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_THAT(session.error, HasSubstr("evidence: /windows/wsl.exe --list -q\n"
                                         "    status: -1 (0xFFFFFFFF)\n"
                                         "    code: Wsl/Service/E_UNEXPECTED\n"));
    EXPECT_THAT(session.error, HasSubstr("cause: The WSL service has failed.\n"));
}

TEST(Exec, StatusOfWslItselfIsToldFromThatOfAProgramWhereItCanBe)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.answers[listing] = {0, "kelp_hub\r\n", {}};
    session.answers[table] = {0, "  NAME STATE VERSION\r\n* kelp_hub Running 2\r\n", {}};
    session.run({"exec", "--", "ls"});
    EXPECT_THAT(session.error,
                HasSubstr(kelpctl::wslFailureIsAmbiguous() ? "error: WSL_OR_PROGRAM_FAILED\n" : "error: WSL_FAILED\n"));
    EXPECT_THAT(session.error, HasSubstr("next step: "));
}

TEST(Exec, FailureOfWslItselfIsAnObjectForPrograms)
{
    Session session;
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {
        kelpctl::wslFailureStatus(), "Wsl/Service/WSL_E_DISTRO_NOT_FOUND", {}};
    EXPECT_EQ(session.run({"exec", "--json", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_EQ(session.json().at("error").at("identifier"), "WSL_FAILED");
    EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "DISTRIBUTION_MISSING");
    EXPECT_EQ(session.json().at("error").at("evidence").at("code"), "Wsl/Service/WSL_E_DISTRO_NOT_FOUND");
    EXPECT_EQ(session.json().at("ok"), false);
    EXPECT_EQ(session.error, "");
}

TEST(Exec, MissingWslIsAnObjectForProgramsAndNoStatusOfAProgram)
{
    Session session;
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {127, {}, "no such program", true};
    EXPECT_EQ(session.run({"exec", "--json", "--", "ls"}), 1);
    EXPECT_EQ(session.json().at("ok"), false);
    EXPECT_EQ(session.json().at("error").at("identifier"), "WSL_FAILED");
    EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "WSL_NOT_FOUND");
}

TEST(Exec, MissingLookUpIsTheCauseOnBothBackends)
{
    const orb::process::detail::RunResult missing{127, {}, "no such program", true};
    Session session;
    fakeLvm().dockerPath = "";
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = missing;
    for (const char* backend : {"--wsl", "--docker"}) {
        fakeLvm().duringSearch = [&missing] { ranProgram({"where", "wsl.exe"}, missing); };
        EXPECT_EQ(session.run({"exec", backend, "--json", "--", "ls"}), 1);
        EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "LOOK_UP_MISSING") << backend;
    }
}

constexpr char programQuery[] =
    "/windows/wsl.exe -d kelp_hub --exec sh -c command -v -- \"$0\" >/dev/null || exit 42 ls";

// What Windows keeps in the place of wsl.exe answers the same to everything.
TEST(Exec, WslThatIsNotInstalledIsNoStatusOfAProgram)
{
    for (const std::int32_t status : {1, 50}) {
        const orb::process::detail::RunResult stub{status, {}, "The Windows Subsystem for Linux is not installed."};
        Session session;
        session.programStatus = status;
        session.answers[programQuery] = stub;
        session.answers[listing] = stub;
        EXPECT_EQ(session.run({"exec", "--", "ls"}), status);
        EXPECT_THAT(session.error, HasSubstr("cause: The Windows Subsystem for Linux is not installed.\n"));
        session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = stub;
        EXPECT_EQ(session.run({"exec", "--json", "--", "ls"}), status);
        EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "WSL_NOT_INSTALLED");
    }
}

TEST(Exec, ProgramsOwnStatusStaysItsOwnWhereThereIsNoShell)
{
    Session session;
    session.programStatus = 1;
    session.answers[programQuery] = {1, {}, "execvpe(sh) failed"};
    session.answers[listing] = {0, "kelp_hub\r\n", {}};
    EXPECT_EQ(session.run({"exec", "--", "ls"}), 1);
    EXPECT_EQ(session.error, "");
}

// On a terminal the words have gone to the user, so wsl.exe is asked to fail once more.
TEST(Exec, CauseIsTheSameOnATerminalAndForPrograms)
{
    for (const char* path : {"Wsl/Service/CreateInstance/CreateVm/HCS/E_OUTOFMEMORY", "Wsl/Service/0x12345678",
                             "Wsl/Service/WSL_E_DISTRO_NOT_FOUND"}) {
        for (const char* listed : {"other\r\n", ""}) {
            const bool fails = *listed == '\0';
            const orb::process::detail::RunResult told{kelpctl::wslFailureStatus(), path, {}};
            Session session;
            session.programStatus = kelpctl::wslFailureStatus();
            session.answers[listing] = {fails ? -1 : 0, fails ? "Wsl/Service/E_UNEXPECTED" : listed, {}};
            session.answers["/windows/wsl.exe -d kelp_hub --exec true"] = told;
            session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = told;
            session.run({"exec", "--json", "--", "ls"});
            const boost::json::value object = session.json().at("error");
            session.run({"exec", "--", "ls"});
            const auto said = [&object](const char* member) { return std::string(object.at(member).as_string()); };
            EXPECT_THAT(session.error, HasSubstr("error: " + said("identifier") + "\n")) << path;
            EXPECT_THAT(session.error,
                        HasSubstr("cause: " + std::string(object.at("cause").at("message").as_string()) + "\n"));
            EXPECT_THAT(session.error, HasSubstr("next step: " + said("next") + "\n"));
        }
    }
}

class ExecWithoutDisk : public testing::Test {
protected:
    // Asks on a terminal and for programs; gives back the cause and the next step.
    std::pair<std::string, std::string> told(const std::filesystem::path& kept)
    {
        const Registered registered({"kelp_hub", kept});
        const orb::process::detail::RunResult result{
            kelpctl::wslFailureStatus(), "Wsl/Service/CreateInstance/MountDisk/HCS/ERROR_FILE_NOT_FOUND", {}};
        Session session;
        session.programStatus = kelpctl::wslFailureStatus();
        session.answers["/windows/wsl.exe -d kelp_hub --exec true"] = result;
        session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = result;
        session.run({"exec", "--json", "--", "ls"});
        const boost::json::value error = session.json().at("error");
        std::string next(error.at("next").as_string());
        session.run({"exec", "--", "ls"});
        EXPECT_THAT(session.error, HasSubstr("next step: " + next + "\n"));
        EXPECT_THAT(session.error, HasSubstr("    code: Wsl/Service/CreateInstance/MountDisk/HCS/"));
        return {std::string(error.at("cause").at("identifier").as_string()), next};
    }

    OwnRegistry registry;
    TemporaryFolder folder;
};

TEST_F(ExecWithoutDisk, DiskThatIsGoneIsTold)
{
    const auto [cause, next] = told(folder.path());
    EXPECT_EQ(cause, "DISK_GONE");
    EXPECT_THAT(next, HasSubstr("kelpctl remove "));
}

TEST_F(ExecWithoutDisk, DiskThatIsThereIsNotCalledGone)
{
    std::ofstream(folder.path() / "ext4.vhdx") << "x";
    const auto [cause, next] = told(folder.path());
    EXPECT_EQ(cause, "WSL_DISK_MISSING");
    EXPECT_THAT(next, Not(HasSubstr("remove")));
}

TEST_F(ExecWithoutDisk, DiskOnADriveThatIsAwayIsNotCalledGone)
{
    const Registered other({"another", folder.path()});
    const auto [cause, next] = told(other.unreachableFolder());
    EXPECT_EQ(cause, "DISK_UNREACHABLE");
    EXPECT_THAT(next, Not(HasSubstr("remove")));
}

TEST(Exec, ProgramThatTheDistributionLacksIsTold)
{
    Session session;
    session.programStatus = 1;
    session.answers["/windows/wsl.exe -d kelp_hub --exec sh -c command -v -- \"$0\" >/dev/null || exit 42 lss"] = {
        42, {}, {}};
    EXPECT_EQ(session.run({"exec", "--", "lss", "-l"}), 1);
    EXPECT_THAT(session.error, HasSubstr("cause: The environment has no program lss.\n"));
}

TEST(Exec, ObjectForProgramsHasTheCauseOfTheScreen)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    session.answers[listing] = {0, "other\r\n", {}};
    session.run({"exec", "--", "ls"});
    EXPECT_THAT(session.error, HasSubstr("cause: There is no distribution kelp_hub_R1.\n"));
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {
        kelpctl::wslFailureStatus(), "Wsl/Service/WSL_E_DISTRO_NOT_FOUND", {}};
    session.run({"exec", "--json", "--", "ls"});
    EXPECT_EQ(session.json().at("error").at("cause").at("identifier"), "DISTRIBUTION_MISSING");
}

TEST(Exec, ProgramIsPartOfTheObjectForPrograms)
{
    Session session;
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {3, "out\n", "err\n"};
    EXPECT_EQ(session.run({"exec", "--json", "--", "ls"}), 3);
    EXPECT_EQ(session.json().at("ok"), true);
    EXPECT_EQ(session.json().at("result"), boost::json::parse(R"({"status": 3, "output": "out\n", "error": "err\n"})"));
    EXPECT_THAT(session.startedArguments, IsEmpty());
}

TEST(Exec, ObjectForProgramsHasAllThatTheProgramPrinted)
{
    const std::string much(3U << 20U, 'x');
    Session session;
    session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {0, much, much};
    session.run({"exec", "--json", "--", "ls"});
    EXPECT_TRUE(session.json().at("result").at("output") == boost::json::value(much));
    EXPECT_TRUE(session.json().at("result").at("error") == boost::json::value(much));
}

TEST(Exec, ObjectForProgramsNeedsNoTerminal)
{
    Session session;
    session.interactive = true;
    session.answers["/usr/bin/docker exec -i -e LD_LIBRARY_PATH=/runtime kelp_hub ls"] = {0, {}, {}};
    EXPECT_EQ(session.run({"exec", "--docker", "--json", "--", "ls"}), 0);
}

constexpr char engineQuery[] = "/usr/bin/docker version --format {{json .}}";
constexpr char containerQuery[] = "/usr/bin/docker container inspect --format {{.State.Status}} kelp_hub";

struct DockerEnd {
    const char* name;
    std::int32_t status;
    // What the engine says of itself and of the container; empty when it does not.
    const char* engine;
    const char* container;
    // What must be told; empty for nothing.
    const char* told;
};

void PrintTo(const DockerEnd& end, std::ostream* stream)
{
    *stream << end.name;
}

class ExecInDocker : public testing::TestWithParam<DockerEnd> {};

TEST_P(ExecInDocker, TellsDockersFailuresFromTheProgramsStatus)
{
    Session session;
    const DockerEnd& end = GetParam();
    session.programStatus = end.status;
    if (*end.engine != '\0') {
        session.answers[engineQuery] = {0, end.engine, {}};
    }
    if (*end.container != '\0') {
        session.answers[containerQuery] = {0, end.container, {}};
    }
    EXPECT_EQ(session.run({"exec", "--docker", "--", "ls"}), end.status);
    EXPECT_EQ(session.out, "");
    if (*end.told == '\0') {
        EXPECT_EQ(session.error, "");
    } else {
        EXPECT_THAT(session.error, HasSubstr(end.told));
        EXPECT_THAT(session.error, HasSubstr("next step: "));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Exec, ExecInDocker,
    testing::Values(DockerEnd{"no engine", 1, "", "", "cause: The Docker engine does not answer.\n"},
                    DockerEnd{"no container", 1, "{}", "", "cause: There is no container kelp_hub.\n"},
                    DockerEnd{"paused", 1, "{}", "paused\n", "cause: The container kelp_hub is paused.\n"},
                    DockerEnd{"stopped", 1, "{}", "exited\n", "cause: The container kelp_hub does not run.\n"},
                    DockerEnd{"the program's own 1", 1, "{}", "running\n", ""},
                    DockerEnd{"refused", 125, "{}", "running\n", "cause: The Docker client or the engine refused"},
                    DockerEnd{"not executable", 126, "{}", "running\n", "cause: Docker could not execute the program"},
                    DockerEnd{"not found", 127, "{}", "running\n", "cause: The environment has no such program"},
                    DockerEnd{"the program's own 3", 3, "", "", ""},
                    DockerEnd{"the program's own 128", 128, "", "", ""}));

TEST(Exec, DockerHasNoStatusOfItsOwn)
{
    Session session;
    session.programStatus = kelpctl::wslFailureStatus();
    EXPECT_EQ(session.run({"exec", "--docker", "--", "ls"}), kelpctl::wslFailureStatus());
    EXPECT_EQ(session.error, "");
    EXPECT_THAT(session.asked, IsEmpty());
}

} // namespace
