// What long work shows of itself.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace kelpctl {

// What is to be shown now.
struct ProgressView {
    // Stands until the next one takes its place, and is erased at the end. Empty for none.
    std::string line;
    // Stay where they are, each on a line of its own.
    std::vector<std::string> notices;
};

struct ProgressOptions {
    // Nothing is shown before this time is over, and then anew at this interval.
    std::chrono::milliseconds interval{1000};
    std::function<std::chrono::steady_clock::time_point()> clock = std::chrono::steady_clock::now;
};

// Shows what `look` gives while it lives, from a thread of its own, which is the one that asks; `elapsed` is since its
// beginning. When `look` throws, what there was stays. Nobody else may write to `stream` in the meantime.
class Progress {
public:
    using Look = std::function<ProgressView(std::chrono::steady_clock::time_point now, std::chrono::seconds elapsed)>;

    Progress(std::ostream& stream, Look look, ProgressOptions options = {});
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    struct Worker;
    std::unique_ptr<Worker> worker_;
};

// "<label>: <what is awaited> ... <seconds> s", cut to so many columns, so that it can be erased.
std::string progressLine(const std::string& label, const std::string& awaited, std::chrono::seconds elapsed,
                         std::size_t columns = 79);

} // namespace kelpctl
