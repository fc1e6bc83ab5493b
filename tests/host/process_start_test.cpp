// Finding and starting programs: the name, the folder, the environment, the handles.
#include "current_folder.h"
#include "environment_variable.h"
#include "process_system.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>

using orb::process::detail::Environment;
using orb::process::detail::run;
using orb::process::detail::runAttached;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

struct Failure {
    std::error_code code;
    std::string text;
};

// Nothing when the program was started.
Failure failureOf(const std::vector<std::string>& arguments, const Environment& environment = {},
                  const std::string& workingDir = {}, bool detach = false)
{
    try {
        run(arguments, environment, workingDir, detach);
    } catch (const std::system_error& error) {
        return {error.code(), error.what()};
    }
    return {};
}

// Whether the run failed as one of a program that does not exist.
bool isNotFound(const std::vector<std::string>& arguments, const std::string& workingDir = {})
{
    const orb::process::detail::RunResult result = run(arguments, {}, workingDir);
    return result.status == 127 && result.programMissing && result.standardOutput.empty() &&
           result.standardError.starts_with("cannot start '" + arguments.front() + "'") &&
           result.standardError.ends_with('\n');
}

std::string contents(const fs::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

bool appears(const fs::path& file)
{
    for (int turn = 0; turn < 1500 && !fs::exists(file); ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return fs::exists(file);
}

} // namespace

TEST(ProcessStatus, IsWhatTheProgramReports)
{
    for (const int status : {0, 1, 2, 127, 128, 255}) {
        EXPECT_EQ(run(child({"exit", std::to_string(status)})).status, status);
    }
}

TEST(ProcessStart, ReportsAProgramThatIsMissingAsAShellDoes)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(isNotFound({(folder.path() / "missing").string()}));
    EXPECT_TRUE(isNotFound({(folder.path() / "missing" / "deeper").string()}));
    EXPECT_TRUE(isNotFound({"no-such-program-anywhere"}));
    EXPECT_TRUE(isNotFound({"", "argument"}));
}

TEST(ProcessStart, TellsAMissingProgramFromOneThatEndsWithItsStatus)
{
    EXPECT_TRUE(run({"no-such-program-anywhere"}).programMissing);
    const orb::process::detail::RunResult result = run(child({"exit", "127"}));
    EXPECT_EQ(result.status, 127);
    EXPECT_FALSE(result.programMissing);
}

TEST(ProcessStart, CallsNoHandlerForAProgramThatIsMissing)
{
    orb::process::detail::RunOptions options;
    int calls = 0;
    options.setExitCallback([&calls](const orb::process::detail::ExitReport&, void*) { ++calls; });
    options.setOutputLogger([&calls](orb::process::detail::Stream, std::string_view) { ++calls; });
    EXPECT_EQ(run({"no-such-program-anywhere"}, {}, {}, false, options).status, 127);
    EXPECT_EQ(calls, 0);
}

TEST(ProcessStart, FailsTheSameWayWithoutWaiting)
{
    EXPECT_EQ(failureOf({"no-such-program-anywhere"}, {}, {}, true).code, std::errc::no_such_file_or_directory);
    EXPECT_THROW(run({}, {}, {}, true), std::invalid_argument);
}

TEST(ProcessStart, RefusesBatchFilesHoweverTheyAreWritten)
{
    const TemporaryFolder folder;
    const fs::path planted = folder.path() / "planted.bat";
    std::ofstream(planted) << "echo ran\n";
    fs::permissions(planted, fs::perms::owner_all);
    for (const char* const ending : {"", ".", " ", ". .", "..."}) {
        EXPECT_THROW(run({planted.string() + ending}), std::invalid_argument) << ending;
    }
    EXPECT_THROW(run({"planted.bat"}, {{"PATH", folder.path().string()}}), std::invalid_argument);
    EXPECT_THROW(run({"PLANTED.BAT"}), std::invalid_argument);
    EXPECT_THROW(run({"x.CmD"}), std::invalid_argument);
    EXPECT_THROW(run({".cmd"}), std::invalid_argument);
    EXPECT_THROW(run({"x.bat"}, {}, {}, true), std::invalid_argument);
    EXPECT_THROW(runAttached({"x.bat"}), std::invalid_argument);
}

TEST(ProgramSearch, FindsABareNameInTheAbsoluteEntriesOfThePath)
{
    const TemporaryFolder empty;
    const TemporaryFolder folder;
    plantChild(folder.path(), "probe_twin");
    const std::string path = empty.path().string() + pathSeparator + folder.path().string();
    const EnvironmentVariable variable("PATH", path);
    EXPECT_EQ(run({"probe_twin", "print", "found", ""}).standardOutput, "found");
}

TEST(ProgramSearch, UsesThePathThatTheProgramIsGiven)
{
    const TemporaryFolder folder;
    plantChild(folder.path(), "probe_twin");
    EXPECT_EQ(run({"probe_twin", "print", "found", ""}, {{"PATH", folder.path().string()}}).standardOutput, "found");
}

TEST(ProgramSearch, IgnoresATwinInTheCurrentFolder)
{
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    plantChild(folder.path(), "probe_twin");
    const CurrentFolder current(folder.path());
    const std::string separator = pathSeparator;
    for (const std::string& path : {elsewhere.path().string(), std::string(), separator, separator + separator,
                                    std::string("."), "." + separator + ".." + separator + "x"}) {
        const EnvironmentVariable variable("PATH", path);
        EXPECT_TRUE(isNotFound({"probe_twin", "print", "x", ""})) << path;
    }
}

TEST(ProgramSearch, IgnoresATwinInTheWorkingFolder)
{
    const TemporaryFolder folder;
    plantChild(folder.path(), "probe_twin");
    EXPECT_TRUE(isNotFound({"probe_twin", "print", "x", ""}, folder.path().string()));
}

TEST(ProgramSearch, IgnoresATwinInTheFolderOfTheRunningProgram)
{
    const std::string twin = fs::path(TEST_CHILD).stem().string();
    ASSERT_TRUE(fs::exists(programFolder() / fs::path(TEST_CHILD).filename()));
    const TemporaryFolder elsewhere;
    const EnvironmentVariable variable("PATH", elsewhere.path().string());
    EXPECT_TRUE(isNotFound({twin, "print", "x", ""}));
}

TEST(ProgramSearch, TakesANameWithASeparatorAsItStands)
{
    const TemporaryFolder folder;
    const std::string program = plantChild(folder.path(), "probe_twin").filename().string();
    const CurrentFolder current(folder.path());
    const TemporaryFolder elsewhere;
    EXPECT_EQ(run({"./" + program, "print", "found", ""}).standardOutput, "found");
    // Also when the program itself works in another folder.
    EXPECT_EQ(run({"./" + program, "print", "found", ""}, {}, elsewhere.path().string()).standardOutput, "found");
}

TEST(ProgramSearch, PassesTheProgramNameAsItWasGiven)
{
    const TemporaryFolder folder;
    const TemporaryFolder withBlank;
    plantChild(folder.path(), "probe_twin");
    const Environment environment{{"PATH", folder.path().string()}};
    EXPECT_EQ(run({"probe_twin", "program-name"}, environment).standardOutput, "probe_twin");
    fs::create_directory(withBlank.path() / "a b");
    const std::string program = plantChild(withBlank.path() / "a b", "probe twin").string();
    EXPECT_EQ(run({program, "program-name"}).standardOutput, program);
}

TEST(WorkingFolder, IsTheCallersUnlessGiven)
{
    EXPECT_TRUE(fs::equivalent(run(child({"folder"})).standardOutput, fs::current_path()));
    const TemporaryFolder folder;
    const fs::path inner = folder.path() / u8"\u00E4 b";
    fs::create_directory(inner);
    const std::u8string name = inner.u8string();
    const std::string printed = run(child({"folder"}), {}, std::string(name.begin(), name.end())).standardOutput;
    EXPECT_TRUE(fs::equivalent(std::u8string(printed.begin(), printed.end()), inner)) << printed;
}

TEST(WorkingFolder, MayBeRelative)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "inner");
    const CurrentFolder current(folder.path());
    EXPECT_TRUE(fs::equivalent(run(child({"folder"}), {}, "inner").standardOutput, folder.path() / "inner"));
}

TEST(WorkingFolder, ThatIsMissingIsNamedInTheFailure)
{
    const TemporaryFolder folder;
    const std::string missing = (folder.path() / "missing").string();
    const Failure failure = failureOf(child({"folder"}), {}, missing);
    EXPECT_TRUE(failure.code);
    EXPECT_THAT(failure.text, HasSubstr("in folder '" + missing + "'"));
}

TEST(ProcessEnvironment, IsInheritedAndExtended)
{
    const EnvironmentVariable inherited("PROCESS_TEST_INHERITED", "from the parent");
    EXPECT_EQ(run(child({"variables", "PROCESS_TEST_INHERITED", "PROCESS_TEST_ADDED", "PROCESS_TEST_MISSING"}),
                  {{"PROCESS_TEST_ADDED", "\xC3\xA4=b c"}})
                  .standardOutput,
              "from the parent\n\xC3\xA4=b c\n(unset)\n");
}

TEST(ProcessEnvironment, ReplacesAnInheritedEntryAndLeavesTheParentsAlone)
{
    const EnvironmentVariable inherited("PROCESS_TEST_VARIABLE", "old");
    EXPECT_EQ(run(child({"variables", "PROCESS_TEST_VARIABLE"}), {{"PROCESS_TEST_VARIABLE", "new"}}).standardOutput,
              "new\n");
    EXPECT_EQ(run(child({"variables", "PROCESS_TEST_VARIABLE"})).standardOutput, "old\n");
}

TEST(ProcessHandles, OfOtherPartsOfTheHostAreNotInherited)
{
    const TemporaryFolder folder;
    const ForeignFile file(folder.path());
    EXPECT_EQ(run(child({"open-file", file.handle()})).standardOutput, "-1");
}

TEST(AttachedRun, UsesTheCallersStreamsAndGivesTheStatus)
{
    const TemporaryFolder folder;
    const fs::path output = folder.path() / "output";
    const ForeignFile file(folder.path());
    {
        const StandardStreams streams(output);
        EXPECT_EQ(runAttached(child({"print", "attached", ""})), 0);
    }
    EXPECT_EQ(contents(output), "attached");
    {
        const StandardStreams streams(folder.path() / "second");
        EXPECT_EQ(runAttached(child({"open-file", file.handle()})), 0);
    }
    EXPECT_EQ(contents(folder.path() / "second"), "-1");
    EXPECT_EQ(runAttached(child({"exit", "7"})), 7);
}

TEST(AttachedRun, TakesEnvironmentAndFolderAsRunDoes)
{
    const TemporaryFolder folder;
    {
        const StandardStreams streams(folder.path() / "output");
        EXPECT_EQ(runAttached(child({"variables", "PROCESS_TEST"}), {{"PROCESS_TEST", "value"}}), 0);
    }
    EXPECT_EQ(contents(folder.path() / "output"), "value\n");
    EXPECT_EQ(runAttached(child({"touch", "touched"}), {}, folder.path().string()), 0);
    EXPECT_TRUE(fs::exists(folder.path() / "touched"));
    EXPECT_THROW(runAttached({"no-such-program-anywhere"}), std::system_error);
}

TEST(DetachedRun, ReturnsAtOnceWithAnEmptyResult)
{
    const TemporaryFolder folder;
    const fs::path go = folder.path() / "go";
    const fs::path done = folder.path() / "done";
    // The program waits for a file that comes after the call, so nothing of it can be in the result.
    const auto result = run(child({"relay", go.string(), done.string()}), {}, {}, true);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, "");
    std::ofstream(go) << "";
    EXPECT_TRUE(appears(done));
}

TEST(DetachedRun, DoesRunTheProgramWhereItShould)
{
    const TemporaryFolder folder;
    run(child({"touch", "touched"}), {}, folder.path().string(), true);
    ASSERT_TRUE(appears(folder.path() / "touched"));
    EXPECT_TRUE(fs::equivalent(contents(folder.path() / "touched"), folder.path()));
}

TEST(DetachedRun, UsesNoOptions)
{
    orb::process::detail::RunOptions options;
    options.setExitCallback([](const orb::process::detail::ExitReport&, void*) { FAIL(); });
    options.setInputHandler([]() -> std::string { throw std::logic_error("asked"); });
    EXPECT_NO_THROW(run(child({"exit", "1"}), {}, {}, true, options));
}

TEST(Watchdog, NamesTheTestThatHangsAndEndsTheProgram)
{
    const auto result = run(child({"hang"}));
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.standardError, HasSubstr("Suite.hangs took more than 200 ms"));
}
