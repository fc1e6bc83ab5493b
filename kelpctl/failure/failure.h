// What kelpctl itself throws.
#pragma once

#include "failure/advice_table.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace kelpctl {

// A failure that it found: the key of its advice, what it is about, and the key of the cause's advice when that is known already.
class Failure : public std::runtime_error {
public:
    explicit Failure(AdviceKey identifier, std::string subject = {}, AdviceKey cause = {})
        : std::runtime_error(identifier.text()), identifier_(identifier), subject_(std::move(subject)), cause_(cause)
    {
    }

    AdviceKey identifier() const noexcept { return identifier_; }
    const std::string& subject() const noexcept { return subject_; }
    AdviceKey cause() const noexcept { return cause_; }

private:
    AdviceKey identifier_;
    std::string subject_;
    AdviceKey cause_;
};

// A command line that means nothing; what() says why.
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
