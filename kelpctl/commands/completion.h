// Completion of kelpctl's own command line in shells.
#pragma once

#include "commands/command.h"

#include <span>
#include <string>
#include <vector>

namespace kelpctl {

// The script for "bash" or "powershell". It asks kelpctl itself for the candidates.
std::string completionScript(const std::string& shell);

// The candidates for the last of the words behind "kelpctl". None means that any text, or a file's name, may stand there.
std::vector<std::string> completions(const std::vector<std::string>& words, std::span<const Command> commands,
                                     std::span<const Option> globalOptions);

} // namespace kelpctl
