#include "asking/journal.h"

#include "terminal/interruption.h"
#include "terminal/text.h"

#include <exception>

namespace kelpctl {

using orb::process::detail::observeRuns;
using Clock = std::chrono::steady_clock;

namespace {

// Whether what a program has started ends with it. The Docker client works through others, for plug-ins and credentials,
// and some installations have a small one before the real one: nobody needs these without it. What wsl.exe starts, such as
// wslhost.exe, serves all Linux programs of the user, and ends by itself. The look-up commands start none.
bool endsWhole(const std::string& program)
{
    return fileName(program) == "docker.exe";
}

} // namespace

RunJournal::RunJournal() : before_(observeRuns(this)) {}

RunJournal::~RunJournal()
{
    observeRuns(before_);
}

void RunJournal::limitEachRun(std::optional<std::chrono::milliseconds> limit)
{
    const std::scoped_lock lock(mutex_);
    limit_ = limit;
}

std::vector<Run> RunJournal::runs() const
{
    const std::scoped_lock lock(mutex_);
    return runs_;
}

void RunJournal::forget()
{
    const std::scoped_lock lock(mutex_);
    runs_.clear();
}

std::string RunJournal::current() const
{
    const std::scoped_lock lock(mutex_);
    return current_.empty() ? std::string() : current_.begin()->second.label;
}

std::optional<RunJournal::Running> RunJournal::running() const
{
    const std::scoped_lock lock(mutex_);
    return current_.empty() ? std::nullopt : std::optional(current_.begin()->second.program);
}

void RunJournal::giveUp()
{
    gaveUp_ = true;
}

void RunJournal::starting(const std::vector<std::string>& arguments, orb::process::detail::RunOptions& options)
{
    if (interrupted() || gaveUp_) {
        throw Interrupted();
    }
    // Where the terminal's Ctrl-C ends kelpctl at once it must reach the program too, and so its session must be ours.
    if (endsWhole(arguments.front()) && interruptionEndsWork()) {
        options.setTerminatesTree(true);
    }
    options.setStartCallback([this](std::uint32_t processId, void* /*userObject*/) {
        const std::scoped_lock lock(mutex_);
        current_[std::this_thread::get_id()].program.processId = processId;
    });
    const std::scoped_lock lock(mutex_);
    const Clock::time_point now = Clock::now();
    const Clock::time_point deadline = limit_ ? now + *limit_ : Clock::time_point::max();
    current_.insert_or_assign(
        std::this_thread::get_id(),
        Current{shortCommand(arguments), {++started_, arguments, now, std::nullopt}, deadline, false});
}

bool RunJournal::shouldTerminate()
{
    const std::scoped_lock lock(mutex_);
    Current& current = current_[std::this_thread::get_id()];
    current.terminated = current.terminated || Clock::now() >= current.deadline || interrupted() || gaveUp_;
    return current.terminated;
}

// A journal that cannot be kept for want of memory is a journal with a gap.
void RunJournal::ended(const std::vector<std::string>& arguments,
                       const orb::process::detail::RunResult* result) noexcept
{
    try {
        const std::scoped_lock lock(mutex_);
        const auto current = current_.find(std::this_thread::get_id());
        const bool terminated = current != current_.end() && current->second.terminated;
        current_.erase(std::this_thread::get_id());
        runs_.push_back(result == nullptr ? runThatDidNotStart(arguments, {})
                                          : runOf(arguments, *result, endingOf(terminated)));
    } catch (const std::exception&) {
    }
}

} // namespace kelpctl
