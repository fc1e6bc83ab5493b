// Makes Linux refuse a system call, as it does when something has run out or is forbidden.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

struct RefusedSystemCall {
    long number;
    // What the system says instead.
    int error;
    // Only calls whose argument of this number, counted from 0, has this value.
    struct Argument {
        unsigned index;
        std::uint32_t value;
    };
    std::optional<Argument> argument;
};

// Does the work on a thread of its own for which, and for the threads and programs that it starts, the call is refused.
// Gives the text of the exception that ended the work, "none" when it came to its end.
std::string failureWithout(const RefusedSystemCall& call, const std::function<void()>& work);
