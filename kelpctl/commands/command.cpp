#include "commands/command.h"

namespace kelpctl {

std::vector<std::string> namesOf(std::span<const Command> commands)
{
    std::vector<std::string> names;
    for (const Command& command : commands) {
        if (command.shown == Shown::listed) {
            names.emplace_back(command.name);
        }
    }
    return names;
}

} // namespace kelpctl
