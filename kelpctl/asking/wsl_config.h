// The user's settings of WSL, in the file .wslconfig.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelpctl {

struct WslConfig {
    // "section.key" and the value, of the keys that WSL knows, in the order of the file.
    std::vector<std::pair<std::string, std::string>> known;
    // How many lines are neither these nor sections, comments or blank.
    std::size_t unknown = 0;
};

WslConfig wslConfigOf(std::string_view text);

// The file's text; nothing when there is none.
std::optional<std::string> wslConfigText();

} // namespace kelpctl
