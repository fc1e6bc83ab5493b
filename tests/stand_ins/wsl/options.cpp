#include "options.h"

#include "command_line.h"
#include "output.h"

#include <algorithm>

namespace stand_in {
namespace {

constexpr std::string_view invalidArgument = "Wsl/E_INVALIDARG";

template <class Condition>
const OptionName& findOption(const std::vector<OptionName>& known, const std::string& argument, Condition condition)
{
    const auto found = std::find_if(known.begin(), known.end(), condition);
    if (found == known.end()) {
        failOnUnknown(argument, invalidArgument);
    }
    return *found;
}

std::vector<const OptionName*> namedBy(const std::string& argument, const std::vector<OptionName>& known)
{
    if (argument.starts_with("--")) {
        return {&findOption(known, argument, [&](const OptionName& each) { return each.longName == argument; })};
    }
    std::vector<const OptionName*> cluster;
    for (const char letter : argument.substr(1)) {
        cluster.push_back(
            &findOption(known, argument, [&](const OptionName& each) { return each.shortName == letter; }));
    }
    return cluster;
}

} // namespace

void failOnUnknown(std::string_view argument, std::string_view code)
{
    fail("Invalid command line argument: {}\nPlease use 'wsl.exe --help' to get a list of supported arguments.", code,
         argument);
}

void failOnMissingValue(std::string_view option)
{
    fail("Argument {} is missing a required parameter.", "", option);
}

Options parseOptions(std::string_view rest, const std::vector<OptionName>& known, std::size_t positionalLimit)
{
    Options result;
    bool optionsEnded = false;
    const std::vector<std::string> arguments = splitArguments(rest);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && argument.size() > 1 && argument.starts_with('-')) {
            for (const OptionName* option : namedBy(argument, known)) {
                if (option->takesValue && i + 1 == arguments.size()) {
                    failOnMissingValue(argument);
                }
                result.options[std::string(option->longName)] = option->takesValue ? arguments[++i] : "";
            }
        } else if (result.positionals.size() == positionalLimit) {
            failOnUnknown(argument, invalidArgument);
        } else {
            result.positionals.push_back(argument);
        }
    }
    return result;
}

} // namespace stand_in
