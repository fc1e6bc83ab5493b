#include "inside.h"

#include "backend.h"
#include "output.h"
#include "platform.h"

#include "orb/lvm.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kelpctl {
namespace {

constexpr char listVariable[] = "WSLENV";

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
    if (!request.environment.contains(listVariable)) {
        std::string& list = command.environment[listVariable];
        list = mergedWslenv(environmentVariable(listVariable).value_or(""), list);
    }
}

void applyDocker(const Request& request, bool interactive, InsideCommand& command)
{
    command.arguments.insert(std::prev(command.arguments.end()), interactive ? "-it" : "-i");
    std::map<std::string, std::string> variables = request.environment;
    orb::lvm::applySharedEnvironment(command.arguments, variables);
}

Report wslFailure(int status)
{
    Report report =
        reportOf(Failure("WSL_FAILED",
                         wslFailureIsAmbiguous() ? "Either wsl.exe failed before or while it ran the program, or the "
                                                   "program itself has ended with this status."
                                                 : "wsl.exe failed before or while it ran the program.",
                         {"status " + std::to_string(status)}));
    report.status = status;
    return report;
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
    if (usesWsl()) {
        applyWsl(request, command);
    } else {
        applyDocker(request, interactive, command);
    }
    command.arguments.insert(command.arguments.end(), request.program.begin(), request.program.end());
    return command;
}

int runInside(const Request& request, Console& console)
{
    const InsideCommand command = insideCommand(request, console.interactive);
    const int status = console.runAttached(command.arguments, command.environment);
    if (!usesWsl() || status != wslFailureStatus()) {
        return status;
    }
    const Outcome outcome{{}, nullptr, wslFailure(status)};
    if (request.json) {
        writeJson(console, request.command, outcome);
    } else {
        writeText(console, request.command, outcome);
    }
    return status;
}

} // namespace kelpctl
