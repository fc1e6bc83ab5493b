#include "commands/command_line.h"

#include "commands/commands.h"
#include "commands/parser.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kelpctl {
namespace {

constexpr char endOfOptions[] = "--";

// The parser takes "--name=" for a flag whose value is still to come.
std::vector<std::string> withEmptyValuesApart(const std::vector<std::string>& arguments)
{
    std::vector<std::string> result;
    bool optionsEnded = false;
    for (const std::string& argument : arguments) {
        optionsEnded = optionsEnded || argument == endOfOptions;
        if (!optionsEnded && argument.size() > 3 && argument.starts_with("--") && argument.ends_with('=')) {
            result.push_back(argument.substr(0, argument.size() - 1));
            result.emplace_back();
        } else {
            result.push_back(argument);
        }
    }
    return result;
}

void addVariable(Request& request, const std::string& text)
{
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos || text.front() == '/') {
        // A name of nothing but a flag ("/p") is none. The text stays out of the message: it may be a secret.
        throw UsageError(request.command, "-e takes NAME=VALUE.");
    }
    request.environment.insert_or_assign(text.substr(0, equals), text.substr(equals + 1));
}

Request parseWith(const std::vector<std::string>& arguments)
{
    Request request = parse(withEmptyValuesApart(arguments));
    if (request.command.empty()) {
        throw UsageError({}, "A command is required.");
    }
    for (const std::string& variable : request.variables) {
        addVariable(request, variable);
    }
    return request;
}

void requireWhatBelongsTogether(const Request& request)
{
    if (request.command == "provision" && request.rootFs && request.name.empty()) {
        throw UsageError(request.command, "--root-fs needs --name: a root file system has no image name of its own.");
    }
    if (request.command == "exec" && (request.program.empty() || request.program.front().empty())) {
        throw UsageError(request.command, "A program is required, with \"--\" in front of it.");
    }
}

} // namespace

Request parseCommandLine(const std::vector<std::string>& arguments)
{
    const auto mark = std::find(arguments.begin(), arguments.end(), endOfOptions);
    // What stands behind the mark is kept away from the parser, which would give some texts a meaning.
    Request request = parseWith({arguments.begin(), mark});
    if (mark != arguments.end() && findCommand(request.command)->takesProgram) {
        request.program.assign(std::next(mark), arguments.end());
    } else if (mark != arguments.end()) {
        request = parseWith(arguments);
    }
    requireWhatBelongsTogether(request);
    return request;
}

bool requestsJson(const std::vector<std::string>& arguments)
{
    const auto mark = std::find(arguments.begin(), arguments.end(), endOfOptions);
    return std::find(arguments.begin(), mark, "--json") != mark;
}

std::optional<std::string> requestedLanguage(const std::vector<std::string>& arguments)
{
    constexpr std::string_view flag = "--language";
    for (std::size_t index = 0; index < arguments.size() && arguments[index] != endOfOptions; ++index) {
        const std::string& argument = arguments[index];
        if (argument == flag && index + 1 < arguments.size()) {
            return arguments[index + 1];
        }
        if (argument.starts_with(std::string(flag) + "=")) {
            return argument.substr(flag.size() + 1);
        }
    }
    return std::nullopt;
}

} // namespace kelpctl
