// Runs programs by the product's own process service. Each has a limit of time, and ends when the user presses Ctrl-C.
#pragma once

#include "answer.h"

#include "host/process.h"

#include <optional>
#include <string>
#include <vector>

namespace verify {

struct Program {
    std::vector<std::string> arguments;
    orb::process::detail::Environment environment = {};
    // Empty for the caller's own.
    std::string folder = {};
    std::optional<std::string> input = {};
    int limitSeconds = 120;
};

// The status of a program that could not be started, which no program has.
inline constexpr std::int32_t notStarted = -1000;

// Never throws for what the system or the process service refuses: the answer says it.
Answer runProgram(const Program& program);

// Ends the program that runs, and every one that is started later, until the program is to clean up.
void interrupt() noexcept;
bool interrupted() noexcept;
// While one lives, another program has the console, and Ctrl-C is for that one.
class ConsoleLent {
public:
    ConsoleLent() noexcept;
    ~ConsoleLent();
    ConsoleLent(const ConsoleLent&) = delete;
    ConsoleLent& operator=(const ConsoleLent&) = delete;
};
// From now on programs run although the user has interrupted.
void cleaningUp() noexcept;

} // namespace verify
