// The progress line of long work.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace kelpctl {

struct ProgressOptions {
    // Nothing is shown before this time is over, and the line is drawn anew at this interval.
    std::chrono::milliseconds interval{1000};
    std::function<std::chrono::steady_clock::time_point()> clock = std::chrono::steady_clock::now;
    // What is being waited for; it is asked from the thread that draws.
    std::function<std::string()> awaited = [] { return std::string(); };
    // The line is cut to this many columns, so that it can be erased.
    std::size_t columns = 79;
};

// Shows "<label>: <what is awaited> ... <seconds> s" on one line of `terminal` while it lives, from a thread of its own, and erases it at
// the end. Nobody else may write to `terminal` in the meantime.
class Progress {
public:
    Progress(std::ostream& terminal, const std::string& label, ProgressOptions options = {});
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    struct Worker;
    std::unique_ptr<Worker> worker_;
};

} // namespace kelpctl
