#include "command_line.h"

#include <algorithm>

namespace stand_in {
namespace {

constexpr std::string_view blanks = " \t";

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string quoted(const std::string& argument)
{
    if (!argument.empty() && argument.find_first_of(" \t\"") == std::string::npos) {
        return argument;
    }
    std::string result = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') {
            result.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        result += c;
    }
    result.append(backslashes, '\\');
    return result + '"';
}

std::string_view takeUntil(std::string_view& rest, std::string_view ends)
{
    const std::size_t length = std::min(rest.find_first_of(ends), rest.size());
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(length);
    return taken;
}

// A quote after an even number of backslashes delimits, after an odd number it is a character of the argument. A quote
// doubled inside quotes is a character too, and ends the quoted part.
std::string takeArgument(std::string_view& rest)
{
    std::string argument;
    bool inQuotes = false;
    while (!rest.empty() && (inQuotes || !isBlank(rest.front()))) {
        const std::size_t backslashes = std::min(rest.find_first_not_of('\\'), rest.size());
        rest.remove_prefix(backslashes);
        if (!rest.starts_with('"')) {
            argument.append(backslashes, '\\');
            if (!rest.empty() && (inQuotes || !isBlank(rest.front()))) {
                argument += rest.front();
                rest.remove_prefix(1);
            }
            continue;
        }
        argument.append(backslashes / 2, '\\');
        rest.remove_prefix(1);
        if (backslashes % 2 == 1) {
            argument += '"';
        } else if (inQuotes && rest.starts_with('"')) {
            rest.remove_prefix(1);
            argument += '"';
            inQuotes = false;
        } else {
            inQuotes = !inQuotes;
        }
    }
    return argument;
}

} // namespace

std::string joinWindows(const std::vector<std::string>& arguments)
{
    std::string line;
    for (const std::string& argument : arguments) {
        line += line.empty() ? "" : " ";
        line += quoted(argument);
    }
    return line;
}

std::string_view afterProgramName(std::string_view line)
{
    bool inQuotes = false;
    while (!line.empty() && (inQuotes || !isBlank(line.front()))) {
        inQuotes = inQuotes != (line.front() == '"');
        line.remove_prefix(1);
    }
    return withoutLeadingBlanks(line);
}

std::string_view withoutLeadingBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

std::string_view takeWord(std::string_view& rest)
{
    rest = withoutLeadingBlanks(rest);
    const std::string_view word = takeUntil(rest, blanks);
    rest = withoutLeadingBlanks(rest);
    return word;
}

std::string_view takeQuotedValue(std::string_view& rest)
{
    rest = withoutLeadingBlanks(rest);
    if (!rest.starts_with('"')) {
        return takeWord(rest);
    }
    rest.remove_prefix(1);
    const std::string_view value = takeUntil(rest, "\"");
    rest.remove_prefix(rest.empty() ? 0 : 1);
    rest = withoutLeadingBlanks(rest);
    return value;
}

std::vector<std::string> splitArguments(std::string_view text)
{
    std::vector<std::string> arguments;
    for (std::string_view rest = withoutLeadingBlanks(text); !rest.empty(); rest = withoutLeadingBlanks(rest)) {
        arguments.push_back(takeArgument(rest));
    }
    return arguments;
}

std::vector<std::string> splitProgramAndArguments(std::string_view text)
{
    std::string_view rest = withoutLeadingBlanks(text);
    if (rest.empty()) {
        return {};
    }
    std::vector<std::string> result;
    if (rest.starts_with('"')) {
        rest.remove_prefix(1);
        result.emplace_back(takeUntil(rest, "\""));
        rest.remove_prefix(rest.empty() ? 0 : 1);
    } else {
        result.emplace_back(takeUntil(rest, blanks));
    }
    for (std::string& argument : splitArguments(rest)) {
        result.push_back(std::move(argument));
    }
    return result;
}

} // namespace stand_in
