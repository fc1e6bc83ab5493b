// The command line: its commands, flags and help.
#pragma once

#include "request.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelpctl {

// A command line that means nothing. what() says why.
class UsageError : public std::runtime_error {
public:
    UsageError(std::string command, const std::string& reason)
        : std::runtime_error(reason), command_(std::move(command))
    {
    }

    // The command that was recognised, empty when none was.
    const std::string& command() const noexcept { return command_; }

private:
    std::string command_;
};

// One flag, as completion needs to know it.
struct Flag {
    // "--log", "-e".
    std::string name;
    bool takesValue = false;
    // The values it may have, empty when any text will do.
    std::vector<std::string> values;
};

struct CommandShape {
    // Empty for the flags that every command takes.
    std::string name;
    std::vector<Flag> flags;
    // The words that may stand behind it, empty when there are none or any text will do.
    std::vector<std::string> words;
};

// All commands that a user may type, the one without a name first.
std::vector<CommandShape> commandShapes();

// Reads the arguments behind the program's name. Throws UsageError.
Request parseCommandLine(const std::vector<std::string>& arguments);

// Whether "--json" stands among the arguments, in front of "--": errors must be reported the right way also
// when the command line cannot be read.
bool asksForJson(const std::vector<std::string>& arguments);

// The value of "--language" in front of "--", also when the command line cannot be read.
std::optional<std::string> askedLanguage(const std::vector<std::string>& arguments);

} // namespace kelpctl
