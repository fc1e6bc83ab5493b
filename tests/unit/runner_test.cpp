// The entry to the process service.
#include "host_fixture.h"

#include "runner.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;

class Runner : public HostTest {};

TEST_F(Runner, GivesBackTheThreeValuesUnchanged)
{
    host().expectRun({"program", "argument"}, {-7, "out \r\n", " err\n"});
    const RunResult result = runCommand({"program", "argument"});
    EXPECT_EQ(result.status, -7);
    EXPECT_EQ(result.standardOutput, "out \r\n");
    EXPECT_EQ(result.standardError, " err\n");
}

TEST_F(Runner, AProgramThatPrintsNothingGivesTwoEmptyTexts)
{
    host().expectRun({"program"}, {5, "", ""});
    const RunResult result = runCommand({"program"});
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "");
}

TEST_F(Runner, ZeroBytesAreKept)
{
    const std::string output("a\0b\0", 4);
    host().expectRun({"program"}, {0, output, output});
    const RunResult result = runCommand({"program"});
    EXPECT_EQ(result.standardOutput, output);
    EXPECT_EQ(result.standardError, output);
}

TEST_F(Runner, ArgumentsWithBlanksAndQuotesStayOneArgumentEach)
{
    const Arguments arguments = {"a program", "two words", "\"quoted\"", "", "back\\slash "};
    host().expectRun(arguments);
    runCommand(arguments);
    expectEvents({ran(arguments)});
}

TEST_F(Runner, BothFormsWithoutAFolderAreTheSame)
{
    host().expectRun({"program", "x"});
    host().expectRun({"program", "x"});
    runCommand({"program", "x"});
    runCommand(Arguments{"program", "x"});
    expectEvents({ran({"program", "x"}), ran({"program", "x"})});
}

TEST_F(Runner, TheFolderIsPassedOn)
{
    host().expectRun({"program", "x"}, {3, "o", "e"});
    const RunResult result = runCommand({"program", "x"}, "d:\\folder");
    EXPECT_EQ(result.status, 3);
    expectEvents({ranIn("d:\\folder", {"program", "x"})});
}

TEST_F(Runner, AWholeCommandLineReplacesTheVector)
{
    host().splitCommandLine = [](const std::string&) { return Arguments{"split", "in", "pieces"}; };
    host().expectRun({"split", "in", "pieces"}, {4, "o", "e"});
    RunRequest request;
    request.commandLine = "split \"in\" pieces";
    request.arguments = {"not", "used"};
    EXPECT_EQ(runRequest(request).status, 4);
    expectEvents({"getRunArguments split \"in\" pieces", ran({"split", "in", "pieces"})});
}

TEST_F(Runner, TheRequestReachesTheServiceWhole)
{
    host().expectRun({"program"});
    RunRequest request;
    request.arguments = {"program"};
    request.environment = {{"NAME", "value"}};
    request.workingDir = "folder";
    request.detach = true;
    runRequest(request);
    expectEvents({"run [program] in folder with NAME=value detached"});
}

TEST_F(Runner, ARequestIsEmptyAtFirst)
{
    const RunRequest request;
    EXPECT_TRUE(request.commandLine.empty());
    EXPECT_TRUE(request.arguments.empty());
    EXPECT_TRUE(request.environment.empty());
    EXPECT_TRUE(request.workingDir.empty());
    EXPECT_FALSE(request.detach);
}

TEST_F(Runner, AnExceptionOfTheServicePassesThrough)
{
    for (int form = 0; form < 3; ++form) {
        host().expectRun({"program"}, []() -> RunResult { throw std::out_of_range("from the service"); });
        try {
            if (form == 0) {
                runCommand({"program"});
            } else if (form == 1) {
                runCommand(Arguments{"program"});
            } else {
                runCommand(Arguments{"program"}, "c:");
            }
            ADD_FAILURE() << "no exception";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "from the service");
        }
    }
}

TEST_F(Runner, WritesNoLog)
{
    host().expectRun({"program"}, {1, "o", "e"});
    runCommand({"program"});
    EXPECT_TRUE(host().loggers.empty());
    expectEvents({ran({"program"})});
}

} // namespace
