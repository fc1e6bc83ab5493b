// The one place where a failure becomes what the user is told.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelpctl {

inline constexpr int statusDone = 0;
inline constexpr int statusFailed = 1;
inline constexpr int statusUsage = 2;

// A failure that kelpctl itself found. what() is the text for the user.
class Failure : public std::runtime_error {
public:
    Failure(std::string identifier, const std::string& text, std::vector<std::string> evidence)
        : std::runtime_error(text), identifier_(std::move(identifier)), evidence_(std::move(evidence))
    {
    }

    const std::string& identifier() const noexcept { return identifier_; }
    const std::vector<std::string>& evidence() const noexcept { return evidence_; }

private:
    std::string identifier_;
    std::vector<std::string> evidence_;
};

// All texts are readable UTF-8.
struct Report {
    std::string identifier;
    std::string text;
    // What the error was thrown with.
    std::vector<std::string> arguments;
    // What the text does not say yet.
    std::vector<std::string> evidence;
    std::string nextStep;
    int status = statusFailed;
};

// What to tell about a caught exception.
Report reportOf(const std::exception_ptr& error);

// What to tell about a failure; kelpctl's own way, without throwing.
Report reportOf(const Failure& failure);

} // namespace kelpctl
