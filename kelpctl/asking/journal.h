// What ran in this process, the library's programs and kelpctl's own.
#pragma once

#include "asking/run.h"

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

namespace kelpctl {

// What keeps a program from being started once the user has interrupted kelpctl, or kelpctl has given up.
class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("interrupted") {}
};

// Keeps the runs of this process while it lives, one at a time of its kind. A run is ended when it takes longer than the
// time limit, or when the user interrupts kelpctl; after that none is started (Interrupted is thrown). Any thread.
class RunJournal : public orb::process::detail::RunObserver {
public:
    RunJournal();
    ~RunJournal() override;

    RunJournal(const RunJournal&) = delete;
    RunJournal& operator=(const RunJournal&) = delete;

    // For the runs that start from now on; there is none at first, and none again for nothing.
    void limitEachRun(std::optional<std::chrono::milliseconds> limit);

    // Those that have ended, in the order in which they ended.
    std::vector<Run> runs() const;
    // What has ended has nothing to do with what comes.
    void forget();

    // What this process waits for: the command line that runs now, shortened. Empty when there is none.
    std::string current() const;

    // What can be looked at from outside: the program that runs now.
    struct Running {
        // Of the runs so far, so that two of the same command line can be told apart.
        std::size_t number = 0;
        std::vector<std::string> arguments;
        std::chrono::steady_clock::time_point start;
        // Nothing until the system has started it.
        std::optional<std::uint32_t> processId;
    };
    std::optional<Running> running() const;

    // Ends what runs, and lets nothing more start, as an interruption does.
    void giveUp();
    bool gaveUp() const { return gaveUp_; }

    void starting(const std::vector<std::string>& arguments, orb::process::detail::RunOptions& options) override;
    bool shouldTerminate() override;
    void ended(const std::vector<std::string>& arguments,
               const orb::process::detail::RunResult* result) noexcept override;

private:
    struct Current {
        std::string label;
        Running program;
        std::chrono::steady_clock::time_point deadline;
        bool terminated = false;
    };

    mutable std::mutex mutex_;
    std::optional<std::chrono::milliseconds> limit_;
    std::map<std::thread::id, Current> current_;
    std::vector<Run> runs_;
    std::size_t started_ = 0;
    std::atomic<bool> gaveUp_ = false;
    RunObserver* before_;
};

} // namespace kelpctl
