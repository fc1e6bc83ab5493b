#include "commands/work.h"

#include "commands/work_progress.h"
#include "failure/failure.h"
#include "terminal/interruption.h"
#include "terminal/progress.h"

#include <functional>
#include <iostream>
#include <sstream>

namespace kelpctl {
namespace {

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
    WorkProgress shown(context, systemEyes(), awaited);
    const Progress progress(context.console.error, std::bind_front(&WorkProgress::look, &shown));
    // What the library makes of a program that was ended is of no interest.
    try {
        step();
    } catch (...) {
        if (context.journal.gaveUp() && !interrupted()) {
            throw Failure("WORK_STALLED");
        }
        if (!interrupted()) {
            throw;
        }
    }
    if (interrupted()) {
        throw Failure("INTERRUPTED");
    }
}

} // namespace kelpctl
