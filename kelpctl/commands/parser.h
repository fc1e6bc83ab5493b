// The rows of the commands as CLI11 reads them. One source includes it, because that takes the compiler seconds.
#pragma once

#include "commands/command.h"

#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// Reads what stands in front of "--". Throws UsageError.
ParsedLine parse(std::vector<std::string> arguments);

// The help of a command, of all without a name; nothing when there is no such command.
std::optional<std::string> helpOn(const std::string& command);

} // namespace kelpctl
