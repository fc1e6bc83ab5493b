#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace stand_in {

struct OptionName {
    std::string_view longName;
    // Zero where there is none.
    char shortName = 0;
    bool takesValue = false;
};

// What stood behind a verb. Options and positional arguments come in any order; "--" ends the options.
struct Options {
    std::map<std::string, std::string> options;
    std::vector<std::string> positionals;

    bool has(const std::string& longName) const { return options.contains(longName); }
};

// More positional arguments than the verb takes are refused, as unknown options are.
Options parseOptions(std::string_view rest, const std::vector<OptionName>& known, std::size_t positionalLimit);

[[noreturn]] void failOnUnknown(std::string_view argument, std::string_view code = {});
[[noreturn]] void failOnMissingValue(std::string_view option);

} // namespace stand_in
