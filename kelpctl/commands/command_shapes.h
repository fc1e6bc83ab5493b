// The flags and words of all commands, as completion needs to know them.
#pragma once

#include "commands/parser.h"

#include <string>
#include <vector>

namespace kelpctl {

struct CommandShape {
    // Empty for the flags that every command takes.
    std::string name;
    std::vector<Flag> flags;
    // The words that may stand behind it, empty when there are none or any text will do.
    std::vector<std::string> words;
};

// All commands that a user may type, the one without a name first.
std::vector<CommandShape> commandShapes();

} // namespace kelpctl
