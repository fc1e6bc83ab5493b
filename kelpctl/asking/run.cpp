#include "asking/run.h"

#include "terminal/interruption.h"
#include "terminal/text.h"

#include "host/text.h"

#include <algorithm>
#include <exception>
#include <string_view>

namespace kelpctl {

namespace {

namespace service = orb::process::detail;
using foundation::core::text::readable;

// A program may print any amount; no answer is that long, and nobody reads more.
std::string beginningOf(std::string_view captured)
{
    constexpr std::size_t longest = 1 << 20;
    return readable(captured.substr(0, longest));
}

Run runCaptured(const std::vector<std::string>& arguments, const service::Environment& environment,
                const std::string& folder)
{
    bool terminated = false;
    service::RunOptions options;
    options.setExitCallback(
        [&terminated](const service::ExitReport& report, void* /*userObject*/) { terminated = report.terminated; });
    const service::RunResult result = service::run(arguments, environment, folder, false, options);
    return runOf(arguments, result, endingOf(terminated));
}

} // namespace

Run runOf(const std::vector<std::string>& arguments, const service::RunResult& result, Ending ending)
{
    return {ending,
            arguments,
            result.status,
            beginningOf(result.standardOutput),
            beginningOf(result.standardError),
            result.standardOutput,
            result.standardError,
            false,
            result.programMissing};
}

Run runThatDidNotStart(const std::vector<std::string>& arguments, const std::string& reason)
{
    return {Ending::notStarted, arguments, std::nullopt, {}, readable(reason), {}, reason};
}

Ending endingOf(bool terminated)
{
    if (!terminated) {
        return Ending::exited;
    }
    return interrupted() ? Ending::interrupted : Ending::timedOut;
}

std::optional<Run> decisiveRun(const std::vector<Run>& runs)
{
    const auto failed = std::find_if(runs.rbegin(), runs.rend(), [](const Run& run) { return !run.succeeded(); });
    if (failed != runs.rend()) {
        return *failed;
    }
    return runs.empty() ? std::nullopt : std::optional(runs.back());
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

Programs systemPrograms()
{
    return {runCaptured, [](const auto& arguments, const auto& environment) {
                return service::runAttached(arguments, environment);
            }};
}

Run ask(const Programs& programs, const std::vector<std::string>& arguments, const std::string& folder)
{
    try {
        return programs.run(arguments, {{"WSL_UTF8", "1"}, {"WSL_DISABLE_WARNINGS", "1"}}, folder);
    } catch (const std::exception& error) {
        return runThatDidNotStart(arguments, error.what());
    }
}

} // namespace kelpctl
