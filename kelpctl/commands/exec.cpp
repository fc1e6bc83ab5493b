#include "commands/exec.h"

#include "asking/docker.h"
#include "asking/wsl.h"
#include "commands/work.h"
#include "failure/causes.h"
#include "failure/report.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/interruption.h"
#include "terminal/platform.h"

#include "lvm/commands.h"

#include "host/environment.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

constexpr char listVariable[] = "WSLENV";
constexpr char utf8Variable[] = "WSL_UTF8";

// An entry of the list is a name, or a name, "/" and flag letters.
std::string_view nameOf(std::string_view entry)
{
    return entry.substr(0, entry.find('/'));
}

std::vector<std::string_view> entriesOf(std::string_view list)
{
    std::vector<std::string_view> entries;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (end > 0) {
            entries.push_back(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return entries;
}

bool namesVariable(const std::vector<std::string_view>& entries, std::string_view name)
{
    return std::any_of(entries.begin(), entries.end(),
                       [name](std::string_view entry) { return nameOf(entry) == name; });
}

// wsl.exe looks a variable up by its bare name, the flags are for the list only.
std::map<std::string, std::string> bareNames(const std::map<std::string, std::string>& variables)
{
    std::map<std::string, std::string> result;
    for (const auto& [name, value] : variables) {
        result.insert_or_assign(std::string(nameOf(name)), value);
    }
    return result;
}

void applyWsl(const Request& request, InsideCommand& command)
{
    command.environment = request.environment;
    orb::lvm::applySharedEnvironment(command.arguments, command.environment);
    command.environment = bareNames(command.environment);
    if (!foundation::core::env::variable(utf8Variable)) {
        command.environment.try_emplace(utf8Variable, "1");
    }
    if (!request.environment.contains(listVariable)) {
        std::string& list = command.environment[listVariable];
        list = mergedWslenv(foundation::core::env::variable(listVariable).value_or(""), list);
    }
}

void applyDocker(const Request& request, bool interactive, InsideCommand& command)
{
    command.arguments.insert(std::prev(command.arguments.end()), interactive ? "-it" : "-i");
    std::map<std::string, std::string> variables = request.environment;
    orb::lvm::applySharedEnvironment(command.arguments, variables);
}

Run runForJson(const Context& context, const InsideCommand& command)
{
    const Interruption interruption(Interruption::Meaning::endWork);
    Run run = context.programs.run(command.arguments, command.environment, {});
    if (run.programMissing && selectedBackend() == Backend::wsl) {
        throw Failure("WSL_FAILED", {}, "WSL_NOT_FOUND");
    }
    return run;
}

Run runOnTerminal(const Context& context, const InsideCommand& command)
{
    const Interruption interruption(Interruption::Meaning::leaveToProgram);
    try {
        const std::int32_t status = context.programs.runAttached(command.arguments, command.environment);
        return {Ending::exited, command.arguments, status, {}, {}, {}, {}, true};
    } catch (const std::system_error& error) {
        if (selectedBackend() == Backend::wsl && error.code() == std::errc::no_such_file_or_directory) {
            throw Failure("WSL_FAILED", {}, "WSL_NOT_FOUND");
        }
        throw;
    }
}

Report reportOn(const Run& inside, AdviceKey identifier, AdviceKey cause, const Context& context)
{
    const std::string& program = context.request.program.front();
    Report report = makeReport(Failure(identifier, program), cause, inside, context.request);
    report.status = *inside.status;
    return report;
}

// What is wrong with the distribution when nothing is wrong with WSL; empty for nothing.
AdviceKey causeOfDistribution(const DistributionList& distributions, const std::string& name)
{
    const auto found = std::find_if(distributions.all.begin(), distributions.all.end(),
                                    [&name](const Distribution& distribution) { return distribution.name == name; });
    if (found == distributions.all.end()) {
        return "DISTRIBUTION_MISSING";
    }
    return isBusy(*found) ? AdviceKey("WSL_BUSY") : AdviceKey();
}

// wsl.exe has the status 1 for a program that does not exist, as many a program has for reasons of its own.
std::optional<Report> missingProgram(const Run& inside, const Context& context)
{
    constexpr std::int32_t noProgramStatus = 1;
    constexpr std::int32_t toldMissing = 42;
    constexpr char script[] = "command -v -- \"$0\" >/dev/null || exit 42";
    if (inside.status != noProgramStatus) {
        return std::nullopt;
    }
    const std::string& client = inside.arguments.front();
    const std::string& distribution = rules::distributionOf(inside.arguments);
    std::vector<std::string> arguments = rules::commands::wslExec(client, distribution);
    arguments.insert(arguments.end(), {"sh", "-c", script, context.request.program.front()});
    if (ask(context.programs, arguments).status != toldMissing) {
        return std::nullopt;
    }
    return reportOn(inside, "WSL_FAILED", "PROGRAM_MISSING", context);
}

// wsl.exe says by its status alone that it failed; what it said may have gone to the user's own streams.
std::optional<Report> wslFailure(const Run& inside, const Context& context)
{
    if (inside.status != wslFailureStatus()) {
        return missingProgram(inside, context);
    }
    const AdviceKey known = causeOfWslStatus(inside);
    // wsl.exe does not know a distribution that is being installed either.
    const bool unknown = known == "WSL_DISTRIBUTION_UNKNOWN";
    if (!known.empty() && !unknown && known != "WSL_CODE_UNKNOWN") {
        return reportOn(inside, "WSL_FAILED", known, context);
    }
    const std::string& name = rules::distributionOf(inside.arguments);
    const DistributionList distributions = askDistributions(context.programs, inside.arguments.front());
    if (!distributions.known() && !unknown) {
        const Run& listing = distributions.answer;
        Report report = makeReport(Failure("WSL_FAILED"), causeOfWslStatus(listing), listing, context.request);
        report.status = *inside.status;
        return report;
    }
    if (const AdviceKey cause = causeOfDistribution(distributions, name); !cause.empty() || unknown) {
        return reportOn(inside, "WSL_FAILED", cause.empty() ? AdviceKey("DISTRIBUTION_MISSING") : cause, context);
    }
    return reportOn(inside, wslFailureIsAmbiguous() ? AdviceKey("WSL_OR_PROGRAM_FAILED") : AdviceKey("WSL_FAILED"),
                    known, context);
}

// Docker's client ends with statuses that programs end with as well, so the container is looked at.
std::optional<Report> dockerFailure(const Run& inside, const Context& context)
{
    const std::int32_t status = *inside.status;
    if (status != 1 && (status < dockerRefused || status > dockerNotFound)) {
        return std::nullopt;
    }
    const std::string container = namesOf(context.request).container;
    switch (askContainer(context.programs, inside.arguments.front(), container)) {
    case ContainerState::unknown:
        return reportOn(inside, "DOCKER_FAILED", "DOCKER_ENGINE_NOT_REACHABLE", context);
    case ContainerState::missing:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_MISSING", context);
    case ContainerState::stopped:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_NOT_RUNNING", context);
    case ContainerState::paused:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_PAUSED", context);
    case ContainerState::running:
        break;
    }
    switch (status) {
    case dockerRefused:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "DOCKER_REFUSED", context);
    case dockerNotExecutable:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "PROGRAM_NOT_EXECUTABLE", context);
    case dockerNotFound:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "PROGRAM_NOT_FOUND", context);
    default:
        return std::nullopt;
    }
}

std::optional<Report> diagnosis(const Run& inside, const Context& context)
{
    // A captured program, and one in a container without a terminal, does not hear of Ctrl-C.
    const Backend backend = selectedBackend();
    const bool hears = inside.attached && (backend == Backend::wsl || context.console.interactive);
    if (interrupted() && !hears) {
        Report report = reportOn(inside, "INTERRUPTED", "PROGRAM_LEFT", context);
        report.status = statusInterrupted;
        return report;
    }
    switch (backend) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return dockerFailure(inside, context);
    }
    return wslFailure(inside, context);
}

boost::json::object resultOf(const Run& inside)
{
    using foundation::core::text::readable;
    return {
        {"status", *inside.status}, {"output", readable(inside.captured)}, {"error", readable(inside.capturedError)}};
}

} // namespace

std::string mergedWslenv(const std::string& inherited, const std::string& list)
{
    const std::vector<std::string_view> own = entriesOf(list);
    std::string merged;
    for (const std::string_view entry : entriesOf(inherited)) {
        if (!namesVariable(own, nameOf(entry))) {
            merged.append(entry).append(":");
        }
    }
    return merged + list;
}

InsideCommand insideCommand(const Request& request, bool interactive)
{
    requireClient();
    InsideCommand command;
    command.arguments = orb::lvm::getContainerArgumentsPrefix(request.container);
    switch (selectedBackend()) {
    case Backend::wsl:
        applyWsl(request, command);
        break;
    case Backend::docker:
        applyDocker(request, interactive, command);
        break;
    }
    command.arguments.insert(command.arguments.end(), request.program.begin(), request.program.end());
    return command;
}

Outcome exec(const Context& context)
{
    const Request& request = context.request;
    InsideCommand command;
    work(context, [&] { command = insideCommand(request, context.console.interactive && !request.json); });
    const Run inside = request.json ? runForJson(context, command) : runOnTerminal(context, command);
    Outcome outcome;
    outcome.failure = diagnosis(inside, context);
    outcome.status = inside.status;
    if (request.json) {
        outcome.result = resultOf(inside);
    }
    return outcome;
}

} // namespace kelpctl
