// The user's settings for WSL's virtual machine, in the file .wslconfig of the user's folder.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelpctl {

struct WslConfig {
    // As written, without what is written before it stands for itself ("\\" for "\"). Empty when it is not set.
    std::string kernel;
    std::string networkingMode;
    // "section.key" in lower case and the value, of all keys that WSL knows, in the order of the file.
    std::vector<std::pair<std::string, std::string>> known = {};
    // How many lines are neither these nor sections, comments or blank.
    std::size_t unknown = 0;
};

// What the text of such a file says. A line that is no setting says nothing.
WslConfig wslConfigIn(std::string_view text);

struct WslConfigFile {
    // UTF-8.
    std::string path;
    bool exists = false;
    WslConfig config;
    // Whether the kernel is there; nothing when none is named, or it cannot be looked at.
    std::optional<bool> kernelExists;
};

// Of this user. May take as long as a drive that is not there. Throws std::exception when its folder is no text.
WslConfigFile wslConfigFile();

} // namespace kelpctl
