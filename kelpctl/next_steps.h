// What the user can do about an error.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kelpctl {

struct NextStep {
    // An error's identifier, or the last part of a code path that wsl.exe prints.
    const char* key;
    const char* text;
};

// The two tables.
std::span<const NextStep> identifierSteps();
std::span<const NextStep> wslCodeSteps();

// The code path in a text that wsl.exe printed ("Wsl/Service/RegisterDistro/E_INVALIDARG"), empty when there is none.
// Words around it are in the user's language, the path never is.
std::string wslCodePath(std::string_view text);

// One concrete step for an error: by the code path when there is one that is known, by the identifier otherwise.
std::string nextStep(const std::string& identifier, std::string_view codePath);

} // namespace kelpctl
