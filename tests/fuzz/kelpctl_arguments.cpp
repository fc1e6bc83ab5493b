// kelpctl's command line: any arguments are a request or a usage error, and what stands behind "--" comes through.
#include "fuzz.h"

#include "commands/command_line.h"

#include <algorithm>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::string> arguments = fuzz::split(fuzz::textOf(data, size), '\0');
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    try {
        const kelpctl::Request request = kelpctl::parseCommandLine(arguments);
        fuzz::require(!request.command.empty(), "a request has a command");
        if (request.command == "exec" && end != arguments.end()) {
            fuzz::require(request.program == std::vector<std::string>(end + 1, arguments.end()),
                          "a program's arguments are what stands behind --");
        }
    } catch (const kelpctl::UsageError& error) {
        fuzz::require(!std::string(error.what()).empty(), "a usage error says why");
    }
    fuzz::require(!kelpctl::requestsJson(arguments) || std::find(arguments.begin(), end, "--json") != end,
                  "--json counts only in front of --");
    return 0;
}
