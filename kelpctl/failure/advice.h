// What the user is told about a failure: what it means, and one thing to do next. All of it is data.
#pragma once

#include "request/names.h"

#include <span>
#include <string>
#include <string_view>

namespace kelpctl {

// One entry of kelpctl's own catalogue. "{1}" to "{4}" stand for the Names below. In a translation the text has the key's
// name, and the next step the key's name with ".next" behind it.
struct Advice {
    // An error's identifier, or the name of a cause.
    const char* key;
    // What it means. Empty for the errors that the host's catalogue has a text for.
    const char* text;
    const char* nextStep;
};

std::span<const Advice> allAdvice();

// The entry of that key; the one of UNEXPECTED_ERROR when there is none.
const Advice& adviceFor(std::string_view key);

// In the configured language, English when there is no translation.
std::string adviceText(const Advice& advice, const Names& names);
std::string adviceNextStep(const Advice& advice, const Names& names);

// Whether there is a translation to this language, English included.
bool hasCatalogue(const std::string& language);

// A failure of wsl.exe, by the last part of the code path that it prints.
struct WslCode {
    const char* code;
    // The key of its advice.
    const char* cause;
};

std::span<const WslCode> wslCodes();

// The key of a known code's advice, empty for any other.
std::string_view causeOfWslCode(std::string_view codePath);

// The code path in a text that wsl.exe printed ("Wsl/Service/RegisterDistro/E_INVALIDARG"), empty when there is none.
// Words around it are in the user's language, the path never is.
std::string wslCodePath(std::string_view text);

} // namespace kelpctl
