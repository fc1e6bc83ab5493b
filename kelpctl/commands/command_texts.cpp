#include "commands/command_texts.h"

namespace kelpctl {
namespace {

constexpr char environmentHelp[] =
    "\nEnvironment:\n"
    "  USE_WSL                   unset or 1: WSL; anything else: Docker\n"
    "  KORVANE_ROOT              installation root, when --root is not given\n"
    "  KORVANE_RELEASE           release, when --release is not given\n"
    "  AUX_DOCKER_ARGS           further arguments of \"docker run\", split at blanks\n"
    "  USE_DOCKER_REPOSITORY     1: pull the image from the registry before the archive is used\n"
    "  KELP_ADDITIONAL_LOGGING   1: log each distribution listing\n"
    "  NO_COLOR                  not empty: no colours\n";

} // namespace

std::vector<std::string> commandNames()
{
    std::vector<std::string> names;
    names.reserve(commandTexts.size());
    for (const CommandText& command : commandTexts) {
        names.emplace_back(command.name);
    }
    return names;
}

bool takesProgram(const std::string& command)
{
    return command == "exec" || command == "env" || command == "complete";
}

std::string programHelp()
{
    std::string text = "Examples:\n";
    for (const CommandText& command : commandTexts) {
        text += std::string("  ") + command.example + "\n";
    }
    text += environmentHelp;
    text += "\nExit status: 0 done, 1 failed, 2 wrong usage, 130 interrupted; for \"exec\" the program's own.";
    return text;
}

} // namespace kelpctl
