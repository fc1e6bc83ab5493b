// The one place where a failure becomes what the user is told.
#pragma once

#include "advice.h"
#include "context.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelpctl {

inline constexpr int statusDone = 0;
inline constexpr int statusFailed = 1;
inline constexpr int statusUsage = 2;

// A failure that kelpctl itself found: the key of its advice, and what it is about.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& identifier, std::string subject = {}, std::string cause = {})
        : std::runtime_error(identifier), subject_(std::move(subject)), cause_(std::move(cause))
    {
    }

    std::string identifier() const { return what(); }
    const std::string& subject() const noexcept { return subject_; }
    // The key of the cause's advice when it is known already.
    const std::string& cause() const noexcept { return cause_; }

private:
    std::string subject_;
    std::string cause_;
};

// The child program that a failure is about. Texts are readable UTF-8, without secrets.
struct Evidence {
    std::vector<std::string> arguments;
    // Nothing when the program was not started.
    std::optional<std::int32_t> status;
    // Nothing when the streams were the user's own.
    std::optional<std::string> output;
    std::optional<std::string> error;
    // wsl.exe's code path, empty when there is none.
    std::string code;
};

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
    std::optional<Evidence> evidence;
    std::string nextStep;
    int status = statusFailed;
};

// The names that advice is filled with.
Names namesOf(const Request& request);

// "0x0000007D": the 32 bits of a status.
std::string hexadecimal(std::int32_t status);

// What to tell about a caught exception. May ask the Docker client further.
Report reportOf(const std::exception_ptr& error, const Context& context);

// What to tell about a failure of kelpctl's own finding, with a cause that is known already (or an empty one).
Report reportOf(const Failure& failure, std::string_view cause, const std::optional<Run>& run, const Request& request);

} // namespace kelpctl
