// Many runs, one after the other and at once.
#include "process_system.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using orb::process::detail::run;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;

namespace {

void inThreads(int count, const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&work, i] { work(i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

// LEAK_RUNS is 10,000, and 150 under an emulator of Windows, where a run takes a tenth of a second.
TEST(ManyRuns, LeaveNoHandleOpen)
{
    const std::vector<std::string> program =
        QUICK_PROGRAM[0] == '\0' ? child({"exit", "0"}) : std::vector<std::string>{QUICK_PROGRAM};
    RunOptions options;
    bool feeding = false;
    const auto runOnce = [&](int i) {
        // Some with an input, some that fail.
        feeding = i % 100 == 0;
        options.setInputHandler(feeding ? [] { return std::string(); } : std::function<std::string()>());
        run(program, {}, {}, false, options);
        if (feeding) {
            EXPECT_EQ(run({"/no/such/program"}, {}, {}, false, options).status, 127);
        }
    };
    // What the first runs set up stays for the life of the process.
    for (int i = 0; i < 3; ++i) {
        runOnce(i);
    }
    const std::size_t before = openHandles();
    {
        const TemporaryFolder folder;
        const ForeignFile leak(folder.path());
        EXPECT_GT(openHandles(), before) << "a leak would not be seen";
    }
    for (int i = 0; i < LEAK_RUNS; ++i) {
        runOnce(i);
    }
    EXPECT_EQ(openHandles(), before);
}

TEST(ManyRuns, AtOnceFromManyThreadsDoNotMixTheirResults)
{
    std::vector<RunResult> results(64);
    inThreads(64, [&](int i) {
        for (int turn = 0; turn < 3; ++turn) {
            results[static_cast<std::size_t>(i)] =
                run(child({"print", "output " + std::to_string(i), "error " + std::to_string(i)}));
        }
    });
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i].standardOutput, "output " + std::to_string(i));
        EXPECT_EQ(results[i].standardError, "error " + std::to_string(i));
    }
}

TEST(ManyRuns, EndTheirStreamsThoughAnotherProgramOutlivesThem)
{
    const TemporaryFolder folder;
    const std::string go = (folder.path() / "go").string();
    std::vector<RunResult> results(49);
    RunResult outliving;
    std::thread outlivingThread;
    // A stream held open by the wrong program is given up only after this.
    RunOptions options;
    options.setStreamTimeout(std::chrono::seconds{90});
    const auto begin = std::chrono::steady_clock::now();
    inThreads(49, [&](int i) {
        if (i == 24) {
            outlivingThread = std::thread([&] { outliving = run(child({"await", go}), {}, {}, false, options); });
        }
        results[static_cast<std::size_t>(i)] = run(child({"print", "done", ""}), {}, {}, false, options);
    });
    EXPECT_THAT(std::chrono::steady_clock::now() - begin, testing::Lt(std::chrono::seconds{80}));
    std::ofstream(go) << "";
    outlivingThread.join();
    EXPECT_EQ(outliving.standardOutput, "seen");
    for (const RunResult& result : results) {
        EXPECT_EQ(result.standardOutput, "done");
    }
}
