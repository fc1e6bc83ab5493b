// What the child programs were that ran on kelpctl's behalf, whoever started them.
#pragma once

#include "host/process.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kelpctl {

struct Run {
    std::vector<std::string> arguments;
    // Nothing when the program could not be started at all.
    std::optional<orb::process::detail::RunResult> result;
    // It was ended because it took longer than the time limit.
    bool timedOut = false;

    bool failed() const { return !result || result->status != 0; }
};

// What keeps a program from being started once the user has interrupted kelpctl.
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

    // For the runs that start from now on; there is none at first.
    void limitEachRun(std::chrono::milliseconds limit);

    // Those that have ended, in the order in which they ended.
    std::vector<Run> runs() const;

    // The one that has ended last; nothing when none has.
    std::optional<Run> last() const;

    // What this process waits for: the command line that runs now, shortened. Empty when there is none.
    std::string current() const;

    void started(const std::vector<std::string>& arguments) override;
    bool endWanted() override;
    void ended(const std::vector<std::string>& arguments,
               const orb::process::detail::RunResult* result) noexcept override;

private:
    struct Current {
        std::string label;
        std::chrono::steady_clock::time_point deadline;
        bool timedOut = false;
    };

    mutable std::mutex mutex_;
    std::optional<std::chrono::milliseconds> limit_;
    std::map<std::thread::id, Current> current_;
    std::vector<Run> runs_;
    RunObserver* before_;
};

// The run that tells most about a failure: the last one that failed, or else the last one. Looking for a program is no
// failure when another way of looking has found one.
std::optional<Run> tellingRun(const std::vector<Run>& runs);

// Everything that a run printed, readable.
std::string readableOutput(const orb::process::detail::RunResult& result);

// "wsl.exe --import kelp_hub": the program's file name and the first arguments that say what it does.
std::string shortCommand(const std::vector<std::string>& arguments);

} // namespace kelpctl
