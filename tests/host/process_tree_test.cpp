// Ending a program with all that it has started.
#include "process_system.h"
#include "process_tree.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using orb::process::detail::ExitReport;
using orb::process::detail::observeRuns;
using orb::process::detail::run;
using orb::process::detail::RunObserver;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using orb::process::detail::Stream;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::Lt;

namespace {

RunResult endWhole(Descendant& last, std::vector<std::string> arguments, RunOptions options = {})
{
    options.setTerminatesTree(true);
    return last.endOnceItIsThere(std::move(arguments), std::move(options));
}

} // namespace

TEST(ProcessTree, EndsWholeOnRequest)
{
    Descendant last;
    const auto begin = steady_clock::now();
    endWhole(last, {"keep-company", "keep-company"});
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{30}));
    EXPECT_TRUE(last.report().terminated);
    EXPECT_FALSE(last.report().streamsAbandoned) << "somebody was left who could have printed";
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
}

TEST(ProcessTree, IsLeftAloneUnlessAskedFor)
{
    Descendant last;
    last.endOnceItIsThere({"keep-company", "keep-company"}, {});
    EXPECT_TRUE(last.report().terminated);
    EXPECT_TRUE(last.answersWithin(Descendant::patient));
}

TEST(ProcessTree, KeepsWhatAllOfItPrintedUntilThen)
{
    Descendant last;
    EXPECT_EQ(endWhole(last, {"keep-company", "keep-company"}).standardOutput, "parentparentready");
}

TEST(ProcessTree, HasTheStatusOfAProgramThatWasEndedAlone)
{
    Descendant one;
    Descendant other;
    const RunResult alone = one.endOnceItIsThere({"keep-company"}, {});
    const RunResult whole = endWhole(other, {"keep-company"});
    EXPECT_NE(alone.status, 0);
    EXPECT_EQ(whole.status, alone.status);
    EXPECT_EQ(other.report().signal, one.report().signal);
    EXPECT_TRUE(one.answersWithin(Descendant::patient));
    EXPECT_FALSE(other.answersWithin(Descendant::longEnough));
}

TEST(ProcessTree, EndsWholeByAnExceptionOfAHandler)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    options.setOutputLogger([printed = std::string()](Stream, std::string_view piece) mutable {
        printed += piece;
        if (printed.find("ready") != std::string::npos) {
            throw std::runtime_error("disk full");
        }
    });
    EXPECT_THROW(last.runWith({"keep-company", "keep-company"}, options), std::runtime_error);
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
}

TEST(ProcessTree, LivesOnWhenTheProgramEndsByItself)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    options.setStreamTimeout(milliseconds{300});
    const RunResult result = last.runWith({"leave-behind"}, options);
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(last.report().terminated);
    EXPECT_TRUE(last.report().streamsAbandoned);
    EXPECT_TRUE(last.answersWithin(Descendant::patient));
}

TEST(ProcessTree, EndsOnRequestAlsoAfterTheProgramHasEnded)
{
    Descendant last;
    RunOptions options;
    options.setTerminatesTree(true);
    options.setStreamTimeout(seconds{90});
    // The program ends as soon as it has started the other.
    options.setTerminationHandler([&last, asked = 0]() mutable { return last.isThere() && ++asked > 20; });
    const auto begin = steady_clock::now();
    const RunResult result = last.runWith({"leave-behind"}, options);
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{30}));
    EXPECT_EQ(result.status, 0) << "the program's own";
    EXPECT_TRUE(last.report().terminated);
    EXPECT_FALSE(last.report().streamsAbandoned);
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
}

TEST(ProcessTree, OfOneRunIsNotThatOfAnother)
{
    const TemporaryFolder folder;
    const std::string go = (folder.path() / "go").string();
    RunResult spared;
    std::atomic<bool> running = false;
    std::thread other([&] {
        RunOptions options;
        options.setTerminatesTree(true);
        options.setTerminationHandler([&] {
            running = true;
            return false;
        });
        spared = run(child({"await", go}), {}, {}, false, options);
    });
    for (int turn = 0; turn < 10; ++turn) {
        RunOptions options;
        options.setTerminatesTree(true);
        options.setTerminationHandler([&] { return running.load(); });
        EXPECT_NE(run(child({"keep-company", "sleep", "120000"}), {}, {}, false, options).status, 0);
    }
    std::ofstream(go) << "";
    other.join();
    EXPECT_EQ(spared.status, 0);
    EXPECT_EQ(spared.standardOutput, "seen");
}

TEST(ProcessTree, LeavesNoHandleOpen)
{
    const auto runOnce = [] {
        RunOptions options;
        options.setTerminatesTree(true);
        options.setTerminationHandler([] { return true; });
        run(child({"keep-company", "sleep", "120000"}), {}, {}, false, options);
        run(child({"exit", "0"}), {}, {}, false, options);
    };
    // What the first runs set up stays for the life of the process.
    runOnce();
    const std::size_t before = openHandles();
    for (int turn = 0; turn < 5; ++turn) {
        runOnce();
    }
    EXPECT_EQ(openHandles(), before);
}

TEST(ProcessTree, MayBeEndedByAnObserver)
{
    // Wants each run to end whole, once its last program is there.
    class Ender : public RunObserver {
    public:
        explicit Ender(const Descendant& last) : last_(last), before_(observeRuns(this)) {}
        ~Ender() override { observeRuns(before_); }
        Ender(const Ender&) = delete;
        Ender& operator=(const Ender&) = delete;

        void starting(const std::vector<std::string>& /*arguments*/, RunOptions& options) override
        {
            options.setTerminatesTree(true);
        }
        bool shouldTerminate() override { return last_.isThere(); }
        void ended(const std::vector<std::string>& /*arguments*/, const RunResult* /*result*/) noexcept override {}

    private:
        const Descendant& last_;
        RunObserver* before_;
    };
    Descendant last;
    {
        const Ender ender(last);
        last.runWith({"keep-company", "keep-company"}, {});
    }
    EXPECT_FALSE(last.answersWithin(Descendant::longEnough));
}
