#include "commands/command_shapes.h"

#include "commands/command_texts.h"

namespace kelpctl {
namespace {

std::vector<std::string> wordsBehind(const std::string& command)
{
    if (command == "completion") {
        return {shells.begin(), shells.end()};
    }
    return command == "help" ? commandNames() : std::vector<std::string>();
}

} // namespace

std::vector<CommandShape> commandShapes()
{
    const std::map<std::string, std::vector<Flag>> flags = allFlags();
    std::vector<CommandShape> shapes = {{{}, flags.at({}), {}}};
    for (const CommandText& text : commandTexts) {
        shapes.push_back({text.name, flags.at(text.name), wordsBehind(text.name)});
    }
    return shapes;
}

} // namespace kelpctl
