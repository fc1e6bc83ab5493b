#include "host/command_line.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace orb::process::detail {

namespace {

constexpr std::string_view separators = " \t";

bool isSeparator(char character)
{
    return separators.find(character) != std::string_view::npos;
}

// Moves the rest of the line to its first character that is no separator.
void skipSeparators(std::string_view& rest)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(separators), rest.size()));
}

// Takes the program name off the line: quotes group, everything else is literal.
std::string takeProgram(std::string_view& rest)
{
    std::string program;
    bool quoted = false;
    while (!rest.empty() && (quoted || !isSeparator(rest.front()))) {
        if (rest.front() == '"') {
            quoted = !quoted;
        } else {
            program += rest.front();
        }
        rest.remove_prefix(1);
    }
    return program;
}

std::size_t takeBackslashes(std::string_view& rest)
{
    const std::size_t count = std::min(rest.find_first_not_of('\\'), rest.size());
    rest.remove_prefix(count);
    return count;
}

// Takes one argument off the line.
std::string takeArgument(std::string_view& rest)
{
    std::string argument;
    bool quoted = false;
    while (!rest.empty() && (quoted || !isSeparator(rest.front()))) {
        const std::size_t backslashes = takeBackslashes(rest);
        if (rest.empty() || rest.front() != '"') {
            argument.append(backslashes, '\\');
            if (!rest.empty() && (quoted || !isSeparator(rest.front()))) {
                argument += rest.front();
                rest.remove_prefix(1);
            }
            continue;
        }
        argument.append(backslashes / 2, '\\');
        rest.remove_prefix(1);
        const bool escaped = backslashes % 2 == 1;
        const bool doubled = !escaped && quoted && !rest.empty() && rest.front() == '"';
        if (escaped || doubled) {
            argument += '"';
        } else {
            quoted = !quoted;
        }
        if (doubled) {
            rest.remove_prefix(1);
        }
    }
    return argument;
}

std::string quotedProgram(const std::string& program)
{
    if (program.find('"') != std::string::npos) {
        throw std::invalid_argument("a program name cannot hold a double quote: '" + program + "'");
    }
    const bool plain = !program.empty() && program.find_first_of(separators) == std::string::npos;
    return plain ? program : '"' + program + '"';
}

std::string quotedArgument(const std::string& argument)
{
    if (!argument.empty() && argument.find_first_of(" \t\"") == std::string::npos) {
        return argument;
    }
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char character : argument) {
        if (character == '"') {
            // Those written so far are doubled, and one more escapes the quote.
            quoted.append(backslashes + 1, '\\');
        }
        backslashes = character == '\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, '\\');
    return quoted + '"';
}

} // namespace

std::vector<std::string> getRunArguments(const std::string& commandLine)
{
    std::vector<std::string> arguments;
    std::string_view rest = commandLine;
    skipSeparators(rest);
    if (rest.empty()) {
        return arguments;
    }
    arguments.push_back(takeProgram(rest));
    skipSeparators(rest);
    while (!rest.empty()) {
        arguments.push_back(takeArgument(rest));
        skipSeparators(rest);
    }
    return arguments;
}

std::string joinArguments(const std::vector<std::string>& arguments)
{
    if (arguments.empty()) {
        return {};
    }
    std::string line = quotedProgram(arguments.front());
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        line += ' ';
        line += quotedArgument(arguments[i]);
    }
    return line;
}

} // namespace orb::process::detail
