// What is thrown for a command line that means nothing.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace kelpctl {

// what() says why it means nothing.
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

} // namespace kelpctl
