// The one place where a failure becomes what the user is told.
#pragma once

#include "failure/advice.h"
#include "failure/failure.h"
#include "request/request.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

inline constexpr int statusDone = 0;
inline constexpr int statusFailed = 1;
inline constexpr int statusUsage = 2;

struct Cause {
    std::string identifier;
    std::string text;
};

// All texts are readable UTF-8.
struct Report {
    std::string identifier;
    std::string text;
    // What the error was thrown with.
    std::vector<std::string> arguments;
    std::optional<Cause> cause;
    // The child program that it is about, without secrets; wsl.exe's code path in what it printed, empty when there is
    // none.
    std::optional<Run> evidence;
    std::string code;
    std::string nextStep;
    int status = statusFailed;
};

// What to tell about a caught exception. May ask the Docker client further.
Report reportOf(const std::exception_ptr& error, const Context& context);

// What to tell about a failure of kelpctl's own finding, with a cause that is known already (or an empty one).
Report makeReport(const Failure& failure, AdviceKey cause, const std::optional<Run>& run, const Request& request);

} // namespace kelpctl
