#include "commands/work.h"

#include "failure/failure.h"
#include "failure/output.h"
#include "terminal/interruption.h"
#include "terminal/progress.h"

#include <iostream>
#include <optional>

namespace kelpctl {
namespace {

// Log records and the progress line would spoil each other.
bool showsProgress(const Context& context)
{
    const bool logsToError = context.request.log != LogLevel::none && !context.request.logFile;
    return context.console.errorIsTerminal && !logsToError;
}

} // namespace

void work(const Context& context, const std::function<void()>& step)
{
    const Interruption interruption(Interruption::Meaning::endWork);
    const StreamDetour detour(std::cout, context.console.error);
    std::optional<Progress> progress;
    if (showsProgress(context)) {
        ProgressOptions options;
        options.awaited = [&context] { return context.journal.current(); };
        progress.emplace(context.console.error, "kelpctl " + context.request.command, options);
    }
    // What the library makes of a program that was ended is of no interest.
    try {
        step();
    } catch (...) {
        if (!interrupted()) {
            throw;
        }
    }
    if (interrupted()) {
        throw Failure("INTERRUPTED");
    }
}

} // namespace kelpctl
