// All commands. Help, completion, parser and dispatch are made from these rows.
#pragma once

#include "commands/command.h"

#include <span>
#include <string>

namespace kelpctl {

std::span<const Command> allCommands();

// The options that every command takes, but for "--help".
std::span<const Option> globalOptions();

// The row of that name; null when there is none.
const Command* findCommand(const std::string& name);

} // namespace kelpctl
