#include "commands/work.h"

#include "failure/failure.h"
#include "terminal/interruption.h"
#include "terminal/progress.h"

#include <iostream>
#include <optional>
#include <sstream>

namespace kelpctl {
namespace {

// Log records and the progress line would spoil each other.
bool showsProgress(const Context& context)
{
    const bool logsToError = context.request.log != LogLevel::none && !context.request.logFile;
    return context.console.errorIsTerminal && !logsToError;
}

// Holds back what is written to `from` while it lives, and writes it to `to` at the end.
class StreamDetour {
public:
    StreamDetour(std::ostream& from, std::ostream& to) : from_(from), to_(to), buffer_(from.rdbuf(text_.rdbuf())) {}
    ~StreamDetour()
    {
        from_.rdbuf(buffer_);
        to_ << text_.str() << std::flush;
    }

    StreamDetour(const StreamDetour&) = delete;
    StreamDetour& operator=(const StreamDetour&) = delete;

private:
    std::ostream& from_;
    std::ostream& to_;
    std::ostringstream text_;
    std::streambuf* buffer_;
};

} // namespace

void work(const Context& context, const std::function<void()>& step, const std::function<std::string()>& awaited)
{
    const Interruption interruption(Interruption::Meaning::endWork);
    const StreamDetour detour(std::cout, context.console.error);
    std::optional<Progress> progress;
    if (showsProgress(context)) {
        ProgressOptions options;
        options.awaited = awaited ? awaited : [&context] { return context.journal.current(); };
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
