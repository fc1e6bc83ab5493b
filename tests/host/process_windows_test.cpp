// What the process service promises on Windows only.
#include "current_folder.h"
#include "environment_variable.h"
#include "process_system.h"
#include "process_tree.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <system_error>

#include <windows.h>

using orb::process::detail::run;
using orb::process::detail::runAttached;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

std::system_error failureOf(const std::vector<std::string>& arguments)
{
    try {
        run(arguments);
    } catch (const std::system_error& error) {
        return error;
    }
    return {0, std::system_category()};
}

// An argument that makes the command line of the test child this long.
std::vector<std::string> childWithLine(std::size_t length)
{
    const std::size_t before = orb::process::detail::joinArguments(child({"exit", "0", "x"})).size() - 1;
    return child({"exit", "0", std::string(length - before, 'x')});
}

// The names of the variables that the test child gets, as they arrive there.
std::vector<std::string> variableNames(const orb::process::detail::Environment& environment)
{
    std::istringstream lines(run(child({"variable-names"}), environment).standardOutput);
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        names.push_back(line);
    }
    return names;
}

// Wine's loader sets these again in every program, and so at the end.
bool isSetByTheLoader(const std::string& name)
{
    return name.starts_with("WINE") || name == "SYSTEMROOT" || name == "SYSTEMDRIVE";
}

} // namespace

TEST(StartCallback, NamesTheProgramByItsProcessId)
{
    RunOptions options;
    std::wstring image(MAX_PATH, L'\0');
    options.setStartCallback([&image](std::uint32_t processId, void*) {
        const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId);
        auto size = static_cast<DWORD>(image.size());
        EXPECT_NE(QueryFullProcessImageNameW(process, 0, image.data(), &size), FALSE);
        image.resize(size);
        CloseHandle(process);
    });
    run(child({"dots", "300", "1"}), {}, {}, false, options);
    EXPECT_EQ(fs::path(image).filename(), fs::path(child({}).front()).filename());
}

TEST(ProcessStatusWindows, IsTheWholeExitCode)
{
    EXPECT_EQ(run(child({"exit", "-1"})).status, -1);
    EXPECT_EQ(run(child({"exit", "259"})).status, 259);
    EXPECT_EQ(run(child({"exit", std::to_string(0xC0000005)})).status, static_cast<std::int32_t>(0xC0000005));
    EXPECT_EQ(run(child({"exit", std::to_string(0xC000013A)})).status, static_cast<std::int32_t>(0xC000013A));
    EXPECT_EQ(runAttached(child({"exit", "259"})), 259);
}

TEST(CommandLineWindows, MayBeAsLongAsTheSystemTakes)
{
    EXPECT_EQ(run(childWithLine(32766)).status, 0);
}

TEST(CommandLineWindows, ThatIsTooLongIsAClearError)
{
    const std::system_error failure = failureOf(childWithLine(32767));
    EXPECT_EQ(failure.code(), std::error_code(ERROR_FILENAME_EXCED_RANGE, std::system_category()));
    EXPECT_THAT(failure.what(), HasSubstr("command line is 32767 characters long"));
}

TEST(ProcessArgumentsWindows, MustBeUtf8)
{
    EXPECT_THROW(run(child({"print", "\xFF", ""})), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {}, "\xC3"), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {{"NAME", "\xFF"}}), std::invalid_argument);
    EXPECT_THROW(run({"a\"b"}), std::invalid_argument);
}

TEST(ProcessStartWindows, RefusesWhatIsNoProgram)
{
    // A folder has one code on Windows and another under Wine.
    EXPECT_NE(failureOf({fs::temp_directory_path().string()}).code().value(), 0);
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "text.exe";
    std::ofstream(file) << "text";
    const DWORD code = static_cast<DWORD>(failureOf({file.string()}).code().value());
    EXPECT_THAT(code, testing::AnyOf(DWORD{ERROR_BAD_EXE_FORMAT}, DWORD{ERROR_INVALID_EXE_SIGNATURE}));
}

TEST(ProcessStartWindows, RefusesABatchFileBehindARoundaboutPath)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "planted.bat";
    std::ofstream(file) << "@echo ran\r\n";
    EXPECT_THROW(run({file.string() + R"(\x\..)"}), std::invalid_argument);
    EXPECT_THROW(run({file.string() + R"(\.)"}), std::invalid_argument);
}

TEST(ProgramSearchWindows, AddsTheExtensionToABareNameOnly)
{
    const TemporaryFolder folder;
    const fs::path program = plantChild(folder.path(), "probe_twin");
    const orb::process::detail::Environment environment{{"PATH", folder.path().string()}};
    EXPECT_EQ(run({"probe_twin", "print", "found", ""}, environment).standardOutput, "found");
    EXPECT_EQ(run({"probe_twin.exe", "print", "found", ""}, environment).standardOutput, "found");
    EXPECT_EQ(run({"PROBE_TWIN.EXE", "print", "found", ""}, environment).standardOutput, "found");
    EXPECT_EQ(run({(folder.path() / "probe_twin").string()}).status, 127);
}

TEST(ProgramSearchWindows, UnderstandsQuotedEntriesAndAnyCaseOfTheVariable)
{
    const TemporaryFolder folder;
    const fs::path inner = folder.path() / "a;b";
    fs::create_directory(inner);
    plantChild(inner, "probe_twin");
    EXPECT_EQ(
        run({"probe_twin", "print", "found", ""}, {{"Path", ";C:;\\;\"" + inner.string() + "\";x"}}).standardOutput,
        "found");
}

// A look-up command prints paths in the code page of consoles. The Japanese letters are in the one of Japan.
TEST(CodePagePrograms, AreFoundAsALookUpCommandPrintsThem)
{
    const TemporaryFolder folder;
    constexpr UINT japanese = 932;
    const fs::path inner = folder.path() / (GetOEMCP() == japanese ? L"\u30BD\u30FC\u30B9" : L"J\u00FCrgen");
    fs::create_directory(inner);
    const std::wstring program = plantChild(inner, "probe_twin").native();
    std::string printed(2 * program.size(), '\0');
    printed.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_OEMCP, 0, program.data(),
                                                                static_cast<int>(program.size()), printed.data(),
                                                                static_cast<int>(printed.size()), nullptr, nullptr)));
    const std::u8string name = fs::path(program).u8string();
    EXPECT_EQ(run({printed, "program-name"}).standardOutput, std::string(name.begin(), name.end()));
    EXPECT_EQ(runAttached({printed, "exit", "7"}), 7);
    const RunResult missing = run({printed + "x"});
    EXPECT_EQ(missing.status, 127);
    EXPECT_THAT(missing.standardError, HasSubstr(std::string(name.begin(), name.end())));
}

TEST(ProgramSearchWindows, HasNoProgramWithoutAName)
{
    const TemporaryFolder folder;
    plantChild(folder.path(), "");
    EXPECT_EQ(run({"", "exit", "0"}, {{"PATH", folder.path().string()}}).status, 127);
}

TEST(ProgramSearchWindows, TakesAPathThatCannotBeForAMissingProgram)
{
    EXPECT_EQ(run({"C:\\a\\docker.exe\r\nC:\\b\\docker.exe"}).status, 127);
    EXPECT_EQ(run({"C:\\a|b.exe"}).status, 127);
}

TEST(WorkingFolderWindows, OfADriveDesignatorIsTheDrivesCurrentFolder)
{
    SetEnvironmentVariableW(L"=C:", L"C:\\windows");
    const std::string folder = run(child({"folder"}), {}, "c:").standardOutput;
    SetEnvironmentVariableW(L"=C:", nullptr);
    EXPECT_TRUE(fs::equivalent(folder, "C:\\windows")) << folder;
    const std::string root = run(child({"folder"}), {}, "C:").standardOutput;
    EXPECT_TRUE(fs::equivalent(root, "C:\\")) << root;
    const std::string own = fs::current_path().root_name().string();
    EXPECT_TRUE(fs::equivalent(run(child({"folder"}), {}, own).standardOutput, fs::current_path()));
}

TEST(ProcessEnvironmentWindows, ReplacesAnEntryWhateverItsCase)
{
    SetEnvironmentVariableW(L"Process_Test_Variable", L"old");
    const RunResult result = run(child({"variables", "Process_Test_Variable"}), {{"PROCESS_test_VARIABLE", "new"}});
    SetEnvironmentVariableW(L"Process_Test_Variable", nullptr);
    EXPECT_EQ(result.standardOutput, "new\n");
}

TEST(ProcessEnvironmentWindows, IsSortedHasEachNameOnceAndKeepsTheDrivesFolders)
{
    SetEnvironmentVariableW(L"=C:", L"C:\\windows");
    std::vector<std::string> names = variableNames({{"b_test", "1"}, {"A_test", "2"}, {"_test", "3"}});
    SetEnvironmentVariableW(L"=C:", nullptr);
    for (std::string& name : names) {
        CharUpperBuffA(name.data(), static_cast<DWORD>(name.size()));
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"=C:", "A_TEST", "B_TEST", "_TEST", "SYSTEMROOT"}));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    std::erase_if(names, isSetByTheLoader);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end())) << testing::PrintToString(names);
}

TEST(ProcessEnvironmentWindows, HasTheNamesAsTheCallerWritesThem)
{
    SetEnvironmentVariableW(L"PROCESS_TEST_VARIABLE", L"inherited");
    SetEnvironmentVariableW(L"Process_Test_Kept", L"inherited");
    const std::vector<std::string> names = variableNames({{"process_test_variable", "given"}});
    SetEnvironmentVariableW(L"PROCESS_TEST_VARIABLE", nullptr);
    SetEnvironmentVariableW(L"Process_Test_Kept", nullptr);
    EXPECT_THAT(names, testing::IsSupersetOf({"process_test_variable", "Process_Test_Kept"}));
    EXPECT_THAT(names, testing::Not(testing::Contains("PROCESS_TEST_VARIABLE")));
}

TEST(ProcessEnvironmentWindows, NamesTheListForWslAsWslLooksForIt)
{
    SetEnvironmentVariableW(L"WSLENV", nullptr);
    EXPECT_THAT(variableNames({{"wslenv", "NAME"}}), testing::Contains("WSLENV"));
    EXPECT_THAT(variableNames({}), testing::Not(testing::Contains("WSLENV")));
    SetEnvironmentVariableW(L"WslEnv", L"INHERITED");
    EXPECT_THAT(variableNames({}), testing::Contains("WSLENV"));
    EXPECT_EQ(run(child({"variables", "WSLENV"})).standardOutput, "INHERITED\n");
    EXPECT_EQ(run(child({"variables", "WSLENV"}), {{"WSLENV", "GIVEN"}}).standardOutput, "GIVEN\n");
    SetEnvironmentVariableW(L"WSLENV", nullptr);
}

TEST(ProcessTreeWindows, IsLeftByAProgramThatIsStartedToBreakAway)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    last.endOnceItIsThere({"break-away"}, options);
    EXPECT_TRUE(last.report().terminated);
    EXPECT_TRUE(last.answersWithin(Descendant::patient));
}

TEST(ProcessTreeWindows, EndsWithTheJobsThatItsProgramsMake)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    last.endOnceItIsThere({"nest-job", "keep-company"}, options);
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
}

TEST(ProcessTreeWindows, EndsWithinTheJobOfItsCallerAndLeavesThatAlone)
{
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    ASSERT_NE(AssignProcessToJobObject(job, GetCurrentProcess()), FALSE);
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    last.endOnceItIsThere({"keep-company"}, options);
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts{};
    ASSERT_NE(QueryInformationJobObject(job, JobObjectBasicAccountingInformation, &counts, sizeof counts, nullptr),
              FALSE);
    EXPECT_EQ(counts.ActiveProcesses, 1U) << "this test";
    CloseHandle(job);
}
