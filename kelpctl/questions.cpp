#include "questions.h"

#include "errors.h"
#include "interruption.h"

#include "host/text.h"

namespace kelpctl {
namespace {

// A program may print any amount.
constexpr std::size_t longestAnswer = 1 << 20;

std::string readable(std::string_view captured)
{
    return foundation::core::text::readable(captured.substr(0, longestAnswer));
}

Ending endingOf(const std::optional<std::int32_t>& status, bool timedOut)
{
    if (timedOut) {
        return Ending::timedOut;
    }
    if (!status) {
        return Ending::notStarted;
    }
    return *status == 0 ? Ending::answered : Ending::failed;
}

} // namespace

Reply replyOf(const Run& run)
{
    if (!run.result) {
        return {endingOf({}, run.timedOut), run.arguments, {}, {}, {}};
    }
    return {endingOf(run.result->status, run.timedOut), run.arguments, run.result->status,
            readable(run.result->standardOutput), readable(run.result->standardError)};
}

Reply replyOf(const Answer& answer, const RunJournal& journal)
{
    const std::optional<Run> last = journal.last();
    const bool timedOut = last && last->arguments == answer.arguments && last->timedOut;
    return {endingOf(answer.status, timedOut), answer.arguments, answer.status, answer.output, answer.error};
}

Reply question(const Context& context, const std::vector<std::string>& arguments)
{
    if (interrupted()) {
        throw Failure("INTERRUPTED");
    }
    return replyOf(ask(context.console, arguments), context.journal);
}

} // namespace kelpctl
