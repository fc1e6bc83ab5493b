#include "commands/work_progress.h"

#include "commands/stage_text.h"
#include "failure/advice.h"
#include "terminal/json.h"
#include "terminal/text.h"

#include <string>
#include <utility>

namespace kelpctl {
namespace {

// Log records and the progress line would spoil each other.
bool showsLine(const Context& context)
{
    const bool logsToError = context.request.log != LogLevel::none && !context.request.logFile;
    return context.console.errorIsTerminal && !logsToError && !context.request.progressObjects;
}

std::string notice(const Context& context, AdviceKey key, const std::string& subject)
{
    Names names = namesOf(context.request);
    names.subject = subject;
    const Advice& advice = adviceFor(key);
    return "kelpctl " + context.request.command + ": " + adviceText(advice, names) + " " +
           adviceNextStep(advice, names);
}

} // namespace

WorkProgress::WorkProgress(const Context& context, Eyes eyes, std::function<std::string()> awaited)
    : context_(context),
      watch_(context.journal, context.request.stallLimit, std::move(eyes)),
      awaited_(std::move(awaited)),
      showsLine_(showsLine(context))
{
}

// Each once a run. A program that reads the objects sees it there.
std::vector<std::string> WorkProgress::noticesOf(const Watch::View& seen)
{
    const Stage& stage = seen.stage;
    if (std::exchange(run_, seen.run) != seen.run) {
        said_.clear();
    }
    if (context_.request.progressObjects || !said_.insert(stage.state).second) {
        return {};
    }
    if (stage.state == State::lowDisk) {
        return {notice(context_, "DISK_NEARLY_FULL", shortSize(stage.freeRoom.value_or(0)))};
    }
    if (stage.state == State::stalled) {
        const AdviceKey key = stage.signal == Signal::disk ? AdviceKey("IMPORT_QUIET") : AdviceKey("LOAD_QUIET");
        return {notice(context_, key, std::to_string(stage.quiet.count()) + " s")};
    }
    return {};
}

ProgressView WorkProgress::look(std::chrono::steady_clock::time_point now, std::chrono::seconds elapsed)
{
    const Request& request = context_.request;
    const Watch::View seen = watch_.look(now);
    ProgressView view;
    view.notices = noticesOf(seen);
    if (seen.stage.state == State::stalled && request.endWhenStalled) {
        context_.journal.giveUp();
    }
    const std::string command = awaited_ ? awaited_() : context_.journal.current();
    if (request.progressObjects) {
        view.notices.push_back(jsonLine(stageObject(seen.stage, wellFormed(command))));
    }
    if (showsLine_) {
        const std::string text = stageText(seen.stage);
        view.line = progressLine("kelpctl " + request.command, text.empty() ? command : text, elapsed);
    }
    return view;
}

} // namespace kelpctl
