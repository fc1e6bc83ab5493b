#include "runs.h"

#include "interruption.h"

#include "host/text.h"

#include <algorithm>
#include <exception>

namespace kelpctl {
namespace {

using orb::process::detail::observeRuns;
using orb::process::detail::RunResult;
using Clock = std::chrono::steady_clock;

std::string fileName(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

} // namespace

RunJournal::RunJournal() : before_(observeRuns(this)) {}

RunJournal::~RunJournal()
{
    observeRuns(before_);
}

void RunJournal::limitEachRun(std::chrono::milliseconds limit)
{
    const std::scoped_lock lock(mutex_);
    limit_ = limit;
}

std::vector<Run> RunJournal::runs() const
{
    const std::scoped_lock lock(mutex_);
    return runs_;
}

std::optional<Run> RunJournal::last() const
{
    const std::scoped_lock lock(mutex_);
    return runs_.empty() ? std::nullopt : std::optional(runs_.back());
}

std::string RunJournal::current() const
{
    const std::scoped_lock lock(mutex_);
    return current_.empty() ? std::string() : current_.begin()->second.label;
}

void RunJournal::started(const std::vector<std::string>& arguments)
{
    if (interrupted()) {
        throw Interrupted();
    }
    const std::scoped_lock lock(mutex_);
    const Clock::time_point deadline = limit_ ? Clock::now() + *limit_ : Clock::time_point::max();
    current_.insert_or_assign(std::this_thread::get_id(), Current{shortCommand(arguments), deadline, false});
}

bool RunJournal::endWanted()
{
    const std::scoped_lock lock(mutex_);
    Current& current = current_[std::this_thread::get_id()];
    current.timedOut = current.timedOut || Clock::now() >= current.deadline;
    return current.timedOut || interrupted();
}

// A journal that cannot be kept for want of memory is a journal with a gap.
void RunJournal::ended(const std::vector<std::string>& arguments, const RunResult* result) noexcept
{
    try {
        const std::scoped_lock lock(mutex_);
        const auto current = current_.find(std::this_thread::get_id());
        const bool timedOut = current != current_.end() && current->second.timedOut;
        current_.erase(std::this_thread::get_id());
        runs_.push_back({arguments, result == nullptr ? std::nullopt : std::optional(*result), timedOut});
    } catch (const std::exception&) {
    }
}

std::optional<Run> tellingRun(const std::vector<Run>& runs)
{
    const auto failed = std::find_if(runs.rbegin(), runs.rend(), [](const Run& run) { return run.failed(); });
    if (failed != runs.rend()) {
        return *failed;
    }
    return runs.empty() ? std::nullopt : std::optional(runs.back());
}

std::string readableOutput(const RunResult& result)
{
    using foundation::core::text::readable;
    return readable(result.standardOutput) + "\n" + readable(result.standardError);
}

std::string shortCommand(const std::vector<std::string>& arguments)
{
    constexpr std::size_t shown = 3;
    std::string text;
    for (std::size_t index = 0; index < std::min(shown, arguments.size()); ++index) {
        text += (index == 0 ? "" : " ") + (index == 0 ? fileName(arguments[index]) : arguments[index]);
    }
    return text;
}

} // namespace kelpctl
