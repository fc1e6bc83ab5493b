// The flags and words of the command line as CLI11 reads them. One source includes it, because that takes the compiler
// seconds.
#pragma once

#include "request/request.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// One flag, as completion needs to know it.
struct Flag {
    // "--log", "-e".
    std::string name;
    bool takesValue = false;
    // The values it may have, empty when any text will do.
    std::vector<std::string> values;
};

// What a command line says, before it becomes a request.
struct ParsedLine {
    // The command, and what is taken as it is.
    Request request;
    bool wsl = false;
    bool docker = false;
    bool version = false;
    // The flag "--help"; the text is the request's.
    bool help = false;
    std::string log;
    std::vector<std::string> variables;
    std::string helpOn;
    long timeLimit = 10;
};

// Reads what stands in front of "--". Throws UsageError.
ParsedLine parse(std::vector<std::string> arguments);

// The help of a command, of all without a name; nothing when there is no such command.
std::optional<std::string> helpOn(const std::string& command);

// The flags of each command that a user may type, under "" those that every command takes.
std::map<std::string, std::vector<Flag>> allFlags();

} // namespace kelpctl
