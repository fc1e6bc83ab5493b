// How the raw command line is split.
#include "wsl_test.h"

using testing::HasSubstr;

class CommandLine : public WslTest {
protected:
    CommandLine() { importAs("Hub"); }

    // The words that a program inside got, each in brackets.
    std::string words(const std::string& commandLine)
    {
        return wslRaw("-d Hub --exec printf [%s] " + commandLine).output;
    }
};

TEST_F(CommandLine, QuotedTopLevelOptionIsNoOptionButACommand)
{
    const Outcome outcome = wslRaw("\"--list\"");
    EXPECT_EQ(outcome.status, 127);
    EXPECT_THAT(outcome.errors, HasSubstr("--list: not found"));
}

TEST_F(CommandLine, QuotesAroundADistributionsNameArePartOfIt)
{
    const std::string unknown = "There is no distribution with the supplied name.\n"
                                "Error code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\n";
    EXPECT_THAT(wslRaw("-d \"Hub\" --exec true"), failsWith(unknown));
    EXPECT_THAT(wslRaw("--terminate \"Hub\""), failsWith(unknown));
    EXPECT_THAT(wslRaw("--unregister \"Hub\""), failsWith(unknown));
    EXPECT_THAT(wslRaw("--set-default \"Hub\""), failsWith(unknown));
    EXPECT_THAT(wslRaw("-d Hub -u \"root\" --exec true"), failsSaying("Wsl/WSL_E_USER_NOT_FOUND"));
    EXPECT_EQ(list({"-q"}), "Hub\r\n");
}

TEST_F(CommandLine, TopLevelWordsEndAtBlanksAndTabs)
{
    EXPECT_THAT(wslRaw("\t -d\tHub \t --exec  echo a"), succeedsWith("a\n"));
}

TEST_F(CommandLine, TopLevelOptionsAreCaseSensitive)
{
    EXPECT_THAT(wslRaw("--LIST"), failsWith("Invalid command line argument: --LIST\n"
                                            "Please use 'wsl.exe --help' to get a list of supported arguments.\n"));
}

TEST_F(CommandLine, UnknownTopLevelOptionFailsWithoutAnErrorCode)
{
    EXPECT_THAT(wslRaw("-q -l"), failsWith("Invalid command line argument: -q\n"
                                           "Please use 'wsl.exe --help' to get a list of supported arguments.\n"));
}

TEST_F(CommandLine, UnknownOptionOfAVerbFailsWithAnErrorCode)
{
    EXPECT_THAT(wslRaw("--list --quick"),
                failsWith("Invalid command line argument: --quick\n"
                          "Please use 'wsl.exe --help' to get a list of supported arguments.\n"
                          "Error code: Wsl/E_INVALIDARG\n"));
}

TEST_F(CommandLine, MissingValueIsSaid)
{
    for (const std::string option : {"-d", "--distribution", "-u", "--cd", "--unregister", "--terminate"}) {
        EXPECT_THAT(wslRaw(option), failsWith("Argument " + option + " is missing a required parameter.\n"));
    }
}

TEST_F(CommandLine, OptionsAfterListComeInAnyOrderAndInClusters)
{
    EXPECT_EQ(wslRaw("-l --running -q").status, 0);
    EXPECT_EQ(wslRaw("-l -q --all").output, "Hub\r\n");
    EXPECT_EQ(wslRaw("\t--list -q").output, "Hub\r\n");
    EXPECT_THAT(wslRaw("-l -qv"), failsSaying("Usage: wsl.exe"));
}

TEST_F(CommandLine, TwoHyphensEndTheOptionsOfAVerb)
{
    EXPECT_THAT(wslRaw("--list -- -q"), failsSaying("Invalid command line argument: -q\r\n"));
    EXPECT_THAT(wslRaw("--import -- -x \"" + folderOf("x").string() + "\" " HUB_ROOTFS), succeedsWith(success));
}

TEST_F(CommandLine, OptionsOfAVerbMayBeQuoted)
{
    EXPECT_THAT(wslRaw("--list \"-q\""), succeedsWith("Hub\r\n"));
}

TEST_F(CommandLine, ExecSplitsByTheRulesOfTheSystem)
{
    EXPECT_EQ(words("a b"), "[a][b]");
    EXPECT_EQ(words("\"a b\" c"), "[a b][c]");
    EXPECT_EQ(words("\"\" x"), "[][x]");
    EXPECT_EQ(words("\"say \\\"hi\\\"\""), "[say \"hi\"]");
    EXPECT_EQ(words("C:\\no_space\\ x"), "[C:\\no_space\\][x]");
    EXPECT_EQ(words("\"C:\\a b\\\\\" x"), "[C:\\a b\\][x]");
    EXPECT_EQ(words("a\\\\\\\"b"), "[a\\\"b]");
    EXPECT_EQ(words("\"a\"\"b\" c"), "[a\"b c]");
}

TEST_F(CommandLine, ExecExpandsNothing)
{
    EXPECT_EQ(words("$HOME * ~ `id`"), "[$HOME][*][~][`id`]");
}

TEST_F(CommandLine, FirstWordAfterExecFollowsTheRuleForProgramNames)
{
    EXPECT_THAT(wslRaw("-d Hub --exec \"/bin/echo\" a"), succeedsWith("a\n"));
    // A backslash escapes nothing there.
    EXPECT_THAT(wslRaw("-d Hub --exec \"no\\\" x").errors, HasSubstr("execvpe(no\\) failed"));
}

TEST_F(CommandLine, ExecWithNothingBehindItFails)
{
    EXPECT_THAT(wslRaw("-d Hub --exec"), failsWith("The parameter is incorrect. \nError code: Wsl/E_INVALIDARG\n"));
}

TEST_F(CommandLine, WithoutExecTheRestGoesToTheShellAsItStands)
{
    EXPECT_THAT(wslRaw("-d Hub echo \"a  b\" '$HOME' $HOME"), succeedsWith("a  b $HOME /root\n"));
    EXPECT_THAT(wslRaw("-d Hub -- echo \"a  b\""), succeedsWith("a  b\n"));
}

TEST_F(CommandLine, DistributionCanBeNamedOnce)
{
    EXPECT_THAT(wslRaw("-d Hub -d Hub --exec true"), failsWith("The distribution name has already been set.\n"));
}

TEST_F(CommandLine, CdValueHandlesQuotes)
{
    EXPECT_THAT(wslRaw("-d Hub --cd \"/etc\" --exec pwd"), succeedsWith("/etc\n"));
    EXPECT_THAT(wslRaw("-d Hub --cd /tmp --exec pwd"), succeedsWith("/tmp\n"));
    EXPECT_THAT(wslRaw("-d Hub --cd ~ --exec pwd"), succeedsWith("/root\n"));
}

TEST_F(CommandLine, LinuxCallersArgumentsAreQuotedLikeAWindowsCallers)
{
    const std::vector<std::string> tricky = {"a b", "", "say \"hi\"", "C:\\a b\\", "\t", "\\\"", "ü€"};
    std::vector<std::string> arguments = {"printf", "[%s]"};
    arguments.insert(arguments.end(), tricky.begin(), tricky.end());
    EXPECT_EQ(inHub(arguments).output, "[a b][][say \"hi\"][C:\\a b\\][\t][\\\"][ü€]");
}
