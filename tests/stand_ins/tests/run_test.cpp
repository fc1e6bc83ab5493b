// Programs inside a distribution: what they get, and what becomes of their streams and statuses.
#include "wsl_test.h"

#include <chrono>
#include <unistd.h>

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class Run : public WslTest {
protected:
    Run() { importAs("Hub"); }
};

TEST_F(Run, UnknownDistributionFailsOnStandardOutput)
{
    EXPECT_THAT(wsl({"-d", "Nope", "--exec", "true"}), failsWith("There is no distribution with the supplied name.\n"
                                                                 "Error code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n"));
}

TEST_F(Run, DistributionIsFoundInAnyCaseAndKeepsItsSpelling)
{
    EXPECT_THAT(wsl({"-d", "HUB", "--exec", "sh", "-c", "echo $WSL_DISTRO_NAME"}), succeedsWith("Hub\n"));
}

TEST_F(Run, WithoutADistributionTheDefaultOneIsTaken)
{
    importAs("Other");
    EXPECT_THAT(wsl({"--exec", "sh", "-c", "echo $WSL_DISTRO_NAME"}), succeedsWith("Hub\n"));
}

TEST_F(Run, WithoutAnyDistributionFailsWithoutAnErrorCode)
{
    wsl({"--unregister", "Hub"});
    const Outcome outcome = wsl({"--exec", "true"});
    EXPECT_THAT(outcome, failsSaying("Windows Subsystem for Linux has no installed distributions.\r\n"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("Error code")));
}

TEST_F(Run, ProgramsRunInsideTheImportedRootFileSystem)
{
    EXPECT_THAT(shellInHub("cat /etc/os-release"), succeedsWith(HasSubstr("ID=hub\n")));
}

TEST_F(Run, ProgramsSeeNothingOfTheMachinesFilesAndProcessesButTheCallersFolder)
{
    EXPECT_EQ(shellInHub("ls " + folder.path().string()).status, 1);
    EXPECT_EQ(shellInHub("ls -d /proc/[0-9]* | wc -l").output.size(), 2U);
    EXPECT_THAT(shellInHub("ls /mnt; ls /mnt/z; ls /mnt/z" + folder.path().parent_path().string() + " | wc -l"),
                succeedsWith("z\n" + folder.path().begin()->string().substr(1) + (++folder.path().begin())->string() +
                             "\n1\n"));
    EXPECT_THAT(shellInHub("cd / && cat /proc/mounts | wc -l"), succeedsWith("11\n"));
}

TEST_F(Run, MountsDoNotReachTheMachine)
{
    shellInHub("true");
    EXPECT_THAT(readFile("/proc/self/mounts"), Not(HasSubstr(folder.path().string())));
}

TEST_F(Run, DevicesAreThere)
{
    EXPECT_THAT(shellInHub("echo a >/dev/null && head -c 4 /dev/zero | wc -c && head -c 4 /dev/urandom | wc -c"),
                succeedsWith("4\n4\n"));
}

TEST_F(Run, FilesStayFromOneRunToTheNext)
{
    shellInHub("echo kept >/tmp/file");
    EXPECT_THAT(shellInHub("cat /tmp/file"), succeedsWith("kept\n"));
}

TEST_F(Run, WorkingFolderIsTheCallersTranslated)
{
    writeFile(folder.path() / "here", "");
    EXPECT_THAT(shellInHub("pwd; test -f here && echo found"),
                succeedsWith("/mnt/z" + folder.path().string() + "\nfound\n"));
}

TEST_F(Run, CallersFolderThatHasNoCounterpartIsWarnedOfInUtf8AndHomeTakesItsPlace)
{
    environment["WSL_STAND_IN_MODE"] = "no-drives";
    environment.erase("WSL_UTF8");
    const Outcome outcome = inHub({"pwd"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "/root\n");
    EXPECT_THAT(outcome.errors, MatchesRegex("wsl: [^\r\n]*" + folder.path().string() + "[^\r\n]*\n"));
}

TEST_F(Run, WorkingFolderIsTheRootWithoutAHome)
{
    wsl({"--import", "Bare", folderOf("Bare").string(), HUB_ROOTFS});
    wsl({"-d", "Bare", "--exec", "rmdir", "/root"});
    EXPECT_THAT(wsl({"-d", "Bare", "--cd", "~", "--exec", "pwd"}), succeedsWith("/\n"));
}

TEST_F(Run, WindowsFolderOfCdIsLookedForUnderMnt)
{
    shellInHub("mkdir -p '/mnt/c/a b'");
    EXPECT_THAT(wslRaw("-d Hub --cd \"C:\\a b\" --exec pwd"), succeedsWith("/mnt/c/a b\n"));
    const Outcome missing = wslRaw("-d Hub --cd C:\\missing --exec pwd");
    EXPECT_EQ(missing.status, 0);
    EXPECT_EQ(missing.output, "/root\n");
    EXPECT_THAT(missing.errors, HasSubstr("chdir(/mnt/c/missing) failed"));
}

TEST_F(Run, StandardVariablesAreSet)
{
    EXPECT_THAT(shellInHub("echo $HOME $USER $LOGNAME $SHELL $WSL_DISTRO_NAME $(test \"$NAME\" = \"$(hostname)\" && "
                           "echo same) [${WSLENV-unset}]"),
                succeedsWith("/root root root /bin/sh Hub same []\n"));
    EXPECT_THAT(shellInHub("echo $PATH"),
                succeedsWith("/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin\n"));
}

TEST_F(Run, UserIsRootUnlessAnotherIsNamed)
{
    EXPECT_THAT(wsl({"-d", "Hub", "--exec", "id", "-u"}), succeedsWith("0\n"));
    EXPECT_THAT(wsl({"-d", "Hub", "-u", "root", "--exec", "id", "-u"}), succeedsWith("0\n"));
    EXPECT_THAT(wsl({"-d", "Hub", "-u", "user", "--exec", "sh", "-c", "id -u; echo $HOME"}),
                succeedsWith("1000\n/tmp\n"));
}

TEST_F(Run, UnknownUserHasTheCodeWithoutTheService)
{
    EXPECT_THAT(wsl({"-d", "Hub", "-u", "nobody-here", "--exec", "id"}),
                failsWith("User not found.\nError code: Wsl/WSL_E_USER_NOT_FOUND\n"));
}

TEST_F(Run, StatusesPassThrough)
{
    for (int status = 0; status < 256; ++status) {
        if (status != 67 && status != 87) {
            EXPECT_EQ(shellInHub("exit " + std::to_string(status)).status, status);
        }
    }
}

TEST_F(Run, Status67IsTakenAsUserNotFound)
{
    EXPECT_THAT(shellInHub("exit 67"), failsWith("User not found.\nError code: Wsl/WSL_E_USER_NOT_FOUND\n"));
}

TEST_F(Run, Status87IsTakenAsTheTerminalLimit)
{
    EXPECT_THAT(shellInHub("exit 87"), failsSaying("Error code: Wsl/WSL_E_TTY_LIMIT\r\n"));
}

TEST_F(Run, DirectChildKilledBySignalGivesItsNumber)
{
    EXPECT_EQ(shellInHub("kill -KILL $$").status, 9);
    EXPECT_EQ(shellInHub("kill -TERM $$").status, 15);
}

// Whether there is a core is up to the machine's limits and its pattern; the program itself may forbid it.
TEST_F(Run, DirectChildThatAbortsGivesTheSignalsNumberAnd128MoreForACore)
{
    EXPECT_EQ(shellInHub("ulimit -c 0 && kill -ABRT $$").status, 6);
    EXPECT_THAT(shellInHub("ulimit -c unlimited && kill -ABRT $$").status, testing::AnyOf(6, 6 + 128));
}

TEST_F(Run, ChildOfTheShellKilledBySignalGivesTheShellsStatus)
{
    EXPECT_EQ(shellInHub("sh -c 'kill -KILL $$'; exit $?").status, 137);
}

TEST_F(Run, MissingProgramIsReportedInUtf8WithStatus1)
{
    environment.erase("WSL_UTF8");
    const Outcome outcome = inHub({"no-such-program", "a"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, MatchesRegex("<3>WSL \\([0-9]+ - Relay\\) ERROR: CreateProcessCommon:[0-9]+: "
                                             "execvpe\\(no-such-program\\) failed: No such file or directory\n"));
}

TEST_F(Run, TildeAfterExecIsAProgramsName)
{
    const Outcome outcome = inHub({"~"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("execvpe(~) failed: No such file or directory\n"));
}

TEST_F(Run, TildeAsTheVeryFirstWordMeansHome)
{
    EXPECT_THAT(wsl({"~", "-d", "Hub", "pwd"}), succeedsWith("/root\n"));
}

TEST_F(Run, TildeElsewhereIsLeftToTheShell)
{
    const Outcome outcome = wsl({"-d", "Hub", "~"});
    EXPECT_EQ(outcome.status, 126);
    EXPECT_THAT(outcome.errors, HasSubstr("/root"));
}

TEST_F(Run, OutputIsPassedThroughAsRawBytes)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    environment.erase("WSL_UTF8");
    const Outcome outcome = inHub({"sh", "-c", "tee /dev/fd/2"}, bytes);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, bytes);
    EXPECT_EQ(outcome.errors, bytes);
}

TEST_F(Run, OneMebibyteOfInputArrivesAndComesBack)
{
    std::string bytes;
    for (int i = 0; i < 1 << 20; ++i) {
        bytes += static_cast<char>(i * 31 + i / 256);
    }
    const Outcome outcome = inHub({"cat"}, bytes);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.output == bytes);
}

TEST_F(Run, InputIsReadEvenIfTheProgramDoesNotWantIt)
{
    writeFile(folder.path() / "input", "a\nb\n");
    EXPECT_EQ(runProgram({"/bin/sh",
                          {"-c", "cat " + (folder.path() / "input").string() +
                                     " | (" WSL_PROGRAM " -d Hub --exec sleep 0.3; cat)"},
                          environment,
                          "",
                          folder.path()})
                  .output,
              "");
}

TEST_F(Run, ProgramThatIsLeftBehindHoldsNoStreamOfTheCallers)
{
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = runProgram({"/bin/sh",
                                        {"-c", WSL_PROGRAM " -d Hub --exec sh -c 'sleep 60 & echo done' | cat"},
                                        environment,
                                        "",
                                        folder.path()});
    EXPECT_EQ(outcome.output, "done\n");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(Run, OnlyTheStandardStreamsReachTheProgram)
{
    const int leaked = dup(1);
    const Outcome outcome = shellInHub("ls /proc/self/fd | wc -l");
    close(leaked);
    // The fourth is the folder that is being listed.
    EXPECT_EQ(outcome.output, "4\n");
}

TEST_F(Run, WithoutAVirtualMachineNothingRuns)
{
    environment["WSL_STAND_IN_MODE"] = "virtualisation-off";
    EXPECT_THAT(inHub({"true"}),
                failsSaying("Error code: Wsl/Service/CreateInstance/CreateVm/HCS/HCS_E_HYPERV_NOT_INSTALLED\r\n"));
    environment["WSL_STAND_IN_MODE"] = "component-missing";
    EXPECT_THAT(inHub({"true"}),
                failsSaying("Error code: Wsl/Service/CreateInstance/CreateVm/HCS/HCS_E_SERVICE_NOT_AVAILABLE\r\n"));
}

TEST_F(Run, ScriptsInsideRun)
{
    EXPECT_THAT(inHub({"/opt/vrun/korvane/bin/hub", "a b", "c"}), succeedsWith(HasSubstr("hub: arguments: a b c\n")));
}
