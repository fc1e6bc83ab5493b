#include "commands/exec.h"

#include "commands/exec_diagnosis.h"
#include "commands/wait.h"
#include "commands/work.h"
#include "failure/causes.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/interruption.h"

#include "host/environment.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <system_error>

namespace kelpctl {
namespace {

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
        throw Failure("WSL_FAILED", {}, causeOfMissingWsl(context));
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
            throw Failure("WSL_FAILED", {}, causeOfMissingWsl(context));
        }
        throw;
    }
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
    work(context, [&] {
        waitForBackend(context);
        command = insideCommand(request, context.console.interactive && !request.json);
    });
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
