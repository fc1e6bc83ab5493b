// A command is one row: its name, what the help says about it, the options it takes, and what it runs.
#pragma once

#include "failure/output.h"
#include "request/request.h"

#include <span>
#include <string>
#include <vector>

namespace kelpctl {

struct Option {
    // "--name", "-e", or a bare name for a word that stands behind the command.
    const char* name;
    // What the help calls its value; null for a switch.
    const char* value;
    const char* help;
    // Notes what was given; no values for a switch.
    void (*take)(Request& request, const std::vector<std::string>& values);
    // The only values there are, when any text will not do.
    std::span<const char* const> words = {};
    // Why a value will not do; empty when it will.
    std::string (*complaint)(const std::string& value) = nullptr;
    bool required = false;
    bool repeated = false;
    // Its values are names of commands.
    bool namesCommand = false;
    // The option that must be there as well, and the one that must not.
    const char* needs = nullptr;
    const char* excludes = nullptr;
};

enum class Shown { listed, hidden, asFlag };

struct Command {
    const char* name;
    const char* summary;
    const char* example;
    // Throws what the library throws, Failure, and UsageError.
    Outcome (*run)(const Context& context);
    std::span<const Option> options = {};
    // What stands behind "--" is a program with its arguments.
    bool takesProgram = false;
    Shown shown = Shown::listed;
};

// Of the commands that a user may type.
inline std::vector<std::string> listedNames(std::span<const Command> commands)
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
