// Capturing what programs print, and feeding what they read.
#include "process_system.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

using orb::process::detail::ExitReport;
using orb::process::detail::run;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using orb::process::detail::Stream;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::Lt;
using testing::ThrowsMessage;

namespace {

RunResult runWith(const RunOptions& options, const std::vector<std::string>& arguments)
{
    return run(child(arguments), {}, {}, false, options);
}

// An input handler that gives these, then the end of the input.
std::function<std::string()> pieces(std::deque<std::string> all)
{
    return [all = std::move(all)]() mutable {
        std::string next;
        if (!all.empty()) {
            next = all.front();
            all.pop_front();
        }
        return next;
    };
}

// The handler's exception reaches the caller, and the program does not live on.
void expectEndByException(const RunOptions& options, const std::string& text)
{
    const TemporaryFolder folder;
    const std::string go = (folder.path() / "go").string();
    const std::string done = (folder.path() / "done").string();
    EXPECT_THAT([&] { runWith(options, {"relay", go, done}); }, ThrowsMessage<std::runtime_error>(text));
    std::ofstream(go) << "";
    std::this_thread::sleep_for(seconds{1});
    EXPECT_FALSE(std::filesystem::exists(done)) << "the program still runs";
    // One that lives on does get there.
    EXPECT_EQ(run(child({"relay", go, done})).standardOutput, "ready");
    EXPECT_TRUE(std::filesystem::exists(done));
}

} // namespace

TEST(ProcessStreams, AreCapturedEachOnItsOwnAndUnchanged)
{
    const RunResult result = run(child({"print", "out\r\n\t\xC3\xA4", "error \n"}));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardOutput, "out\r\n\t\xC3\xA4");
    EXPECT_EQ(result.standardError, "error \n");
}

TEST(ProcessStreams, AreEmptyOfAProgramThatPrintsNothing)
{
    for (const int status : {0, 3}) {
        const RunResult result = run(child({"exit", std::to_string(status)}));
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.standardOutput, "");
        EXPECT_EQ(result.standardError, "");
    }
}

TEST(ProcessStreams, MayBothBeLargeAndInterleaved)
{
    const RunResult result = run(child({"flood", "1048576", "1048576"}));
    EXPECT_EQ(result.standardOutput, std::string(1048576, 'o'));
    EXPECT_EQ(result.standardError, std::string(1048576, 'e'));
}

TEST(ProcessStreams, MayBeFloodedOnTheErrorStreamAlone)
{
    const RunResult result = run(child({"flood", "0", "3000000"}));
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.standardError, std::string(3000000, 'e'));
}

TEST(ProcessStreams, GiveTheProgramAnEmptyInput)
{
    EXPECT_EQ(run(child({"copy-input"})).standardOutput, "(end)");
}

TEST(InputHandler, FeedsTheProgramUntilItGivesAnEmptyPiece)
{
    RunOptions options;
    options.setInputHandler(pieces({"first ", std::string(300000, 'x'), " last"}));
    EXPECT_EQ(runWith(options, {"copy-input"}).standardOutput, "first " + std::string(300000, 'x') + " last(end)");
}

TEST(InputHandler, MayGiveNothingAtAll)
{
    RunOptions options;
    options.setInputHandler(pieces({}));
    EXPECT_EQ(runWith(options, {"copy-input"}).standardOutput, "(end)");
}

TEST(InputHandler, IsNoHindranceToAProgramThatDoesNotRead)
{
    RunOptions options;
    const std::string endless(300000, 'x');
    options.setInputHandler([&] { return endless; });
    const RunResult result = runWith(options, {"print", "done", ""});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardOutput, "done");
}

TEST(InputHandler, IsNoHindranceWhenADescendantKeepsTheInputOpen)
{
    RunOptions options;
    const std::string endless(300000, 'x');
    options.setInputHandler([&] { return endless; });
    options.setStreamTimeout(milliseconds{200});
    const auto begin = steady_clock::now();
    EXPECT_EQ(runWith(options, {"leave-behind", "sleep", "8000"}).standardOutput, "parent");
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{6}));
}

TEST(InputHandler, CanAnswerWhatTheLoggerSees)
{
    RunOptions options;
    std::atomic<int> heard = 0;
    options.setOutputLogger([&](Stream, std::string_view) { ++heard; });
    int asked = 0;
    options.setInputHandler([&]() -> std::string {
        while (heard < asked) {
            std::this_thread::sleep_for(milliseconds{1});
        }
        return asked++ < 3 ? "line " + std::to_string(asked) + '\n' : "";
    });
    EXPECT_EQ(runWith(options, {"answer"}).standardOutput, "heard line 1\nheard line 2\nheard line 3\n");
}

TEST(InputHandler, IsStoppedByAnExceptionOfTheLogger)
{
    RunOptions options;
    const std::string endless(300000, 'x');
    options.setInputHandler([&] { return endless; });
    options.setOutputLogger([](Stream, std::string_view) { throw std::runtime_error("no more output"); });
    EXPECT_THROW(runWith(options, {"print", "something", ""}), std::runtime_error);
}

TEST(InputHandler, PassesItsExceptionToTheCallerAndEndsTheProgram)
{
    RunOptions options;
    options.setInputHandler([]() -> std::string { throw std::runtime_error("no more input"); });
    expectEndByException(options, "no more input");
}

TEST(OutputLogger, SeesEveryPieceAsItArrives)
{
    RunOptions options;
    std::string output;
    std::string error;
    options.setOutputLogger(
        [&](Stream stream, std::string_view piece) { (stream == Stream::output ? output : error) += piece; });
    const RunResult result = runWith(options, {"flood", "400000", "300000"});
    EXPECT_EQ(output, result.standardOutput);
    EXPECT_EQ(error, result.standardError);
    EXPECT_EQ(output.size(), 400000U);
    EXPECT_EQ(error.size(), 300000U);
}

TEST(OutputLogger, SeesOutputWhileTheProgramStillRuns)
{
    RunOptions options;
    std::vector<steady_clock::time_point> seen;
    options.setOutputLogger([&](Stream, std::string_view) { seen.push_back(steady_clock::now()); });
    EXPECT_EQ(runWith(options, {"dots", "300", "3"}).standardOutput, "...");
    ASSERT_GE(seen.size(), 2U);
    EXPECT_GE(seen.back() - seen.front(), milliseconds{200});
}

TEST(OutputLogger, PassesItsExceptionToTheCallerAndEndsTheProgram)
{
    RunOptions options;
    options.setOutputLogger([](Stream, std::string_view) { throw std::runtime_error("disk full"); });
    expectEndByException(options, "disk full");
}

TEST(TerminationHandler, EndsTheProgramAndKeepsWhatItPrinted)
{
    RunOptions options;
    bool printed = false;
    ExitReport report;
    options.setOutputLogger([&](Stream, std::string_view) { printed = true; });
    options.setTerminationHandler([&] { return printed; });
    options.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    const auto begin = steady_clock::now();
    const RunResult result = runWith(options, {"dots", "500", "120"});
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{30}));
    EXPECT_THAT(result.standardOutput, HasSubstr("."));
    EXPECT_NE(result.status, 0);
    EXPECT_EQ(report.status, result.status);
    EXPECT_TRUE(report.terminated);
    EXPECT_FALSE(report.streamsAbandoned);
}

TEST(TerminationHandler, IsAskedAboutTenTimesASecond)
{
    RunOptions options;
    int asked = 0;
    options.setTerminationHandler([&] {
        ++asked;
        return false;
    });
    const auto begin = steady_clock::now();
    EXPECT_EQ(runWith(options, {"sleep", "1000"}).status, 0);
    // On a machine that has much else to do the run takes longer than the program.
    const auto most = (steady_clock::now() - begin) / milliseconds{100} + 5;
    EXPECT_THAT(asked, testing::AllOf(testing::Ge(3), testing::Le(most)));
}

TEST(TerminationHandler, DoesNotWaitLongForTheDescendantsOfTheEndedProgram)
{
    RunOptions options;
    ExitReport report;
    options.setTerminationHandler([] { return true; });
    options.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    const auto begin = steady_clock::now();
    runWith(options, {"keep-company", "sleep", "8000"});
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{4}));
    EXPECT_TRUE(report.terminated);
}

TEST(TerminationHandler, PassesItsExceptionToTheCallerAndEndsTheProgram)
{
    RunOptions options;
    options.setTerminationHandler([]() -> bool { throw std::runtime_error("cancelled"); });
    expectEndByException(options, "cancelled");
}

TEST(StartCallback, IsCalledOnceBeforeAnyOutputWithTheUserObject)
{
    RunOptions options;
    std::vector<std::string> events;
    int object = 0;
    options.setUserObject(&object);
    options.setStartCallback([&](std::uint32_t processId, void* userObject) {
        events.emplace_back("started");
        EXPECT_NE(processId, 0U);
        EXPECT_EQ(userObject, &object);
    });
    options.setOutputLogger([&](Stream, std::string_view) { events.emplace_back("output"); });
    EXPECT_EQ(runWith(options, {"dots", "1", "1"}).standardOutput, ".");
    EXPECT_THAT(events, testing::ElementsAre("started", "output"));
}

TEST(StartCallback, IsNotCalledForAProgramThatDoesNotExist)
{
    RunOptions options;
    options.setStartCallback([](std::uint32_t, void*) { ADD_FAILURE() << "nothing was started"; });
    EXPECT_TRUE(run({"no such program"}, {}, {}, false, options).programMissing);
}

TEST(StartCallback, PassesItsExceptionToTheCallerAndEndsTheProgram)
{
    RunOptions options;
    options.setStartCallback([](std::uint32_t, void*) { throw std::runtime_error("unwanted"); });
    expectEndByException(options, "unwanted");
}

TEST(ExitCallback, IsCalledOnceWithTheReportAndTheUserObject)
{
    RunOptions options;
    int calls = 0;
    int object = 0;
    options.setUserObject(&object);
    options.setExitCallback([&](const ExitReport& report, void* userObject) {
        ++calls;
        EXPECT_EQ(report.status, 3);
        EXPECT_EQ(report.signal, 0);
        EXPECT_FALSE(report.terminated);
        EXPECT_FALSE(report.streamsAbandoned);
        EXPECT_EQ(userObject, &object);
    });
    EXPECT_EQ(runWith(options, {"exit", "3"}).status, 3);
    EXPECT_EQ(calls, 1);
}

TEST(ExitCallback, PassesItsExceptionToTheCaller)
{
    RunOptions options;
    options.setExitCallback([](const ExitReport&, void*) { throw std::runtime_error("unwanted"); });
    EXPECT_THROW(runWith(options, {"exit", "0"}), std::runtime_error);
}

TEST(StreamTimeout, GivesUpStreamsThatADescendantKeepsOpen)
{
    RunOptions options;
    options.setStreamTimeout(milliseconds{300});
    ExitReport report;
    options.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    const auto begin = steady_clock::now();
    const RunResult result = runWith(options, {"leave-behind", "sleep", "8000"});
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{6}));
    EXPECT_EQ(result.standardOutput, "parent");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(report.streamsAbandoned);
}

TEST(StreamTimeout, CountsFromTheLastByteThatADescendantPrinted)
{
    RunOptions options;
    options.setStreamTimeout(milliseconds{2500});
    ExitReport report;
    options.setExitCallback([&](const ExitReport& ended, void*) { report = ended; });
    const RunResult result = runWith(options, {"leave-behind", "dots", "500", "8"});
    EXPECT_EQ(std::count(result.standardOutput.begin(), result.standardOutput.end(), '.'), 8);
    EXPECT_FALSE(report.streamsAbandoned);
}

TEST(StreamTimeout, DoesNotCutASilentProgramShort)
{
    RunOptions options;
    options.setStreamTimeout(milliseconds{0});
    EXPECT_EQ(runWith(options, {"dots", "400", "2"}).standardOutput, "..");
}

TEST(StreamTimeout, MayBeForEver)
{
    RunOptions options;
    options.setStreamTimeout(milliseconds::max());
    EXPECT_EQ(runWith(options, {"leave-behind", "dots", "300", "2"}).standardOutput.size(),
              std::string("parent..").size());
}
