// What the user is told about a failure: what it means, and one thing to do next. All of it is data.
#pragma once

#include "failure/advice_table.h"
#include "request/request.h"

#include <span>
#include <string>
#include <string_view>

namespace kelpctl {

const Advice& adviceFor(AdviceKey key);

// The key for an error's identifier; UNEXPECTED_ERROR for one that has no advice.
AdviceKey adviceKey(std::string_view identifier);

// In the configured language, English when there is no translation.
std::string adviceText(const Advice& advice, const Names& names);
std::string adviceNextStep(const Advice& advice, const Names& names);

// Whether there is a translation to this language, English included.
bool hasCatalogue(const std::string& language);

// A failure of wsl.exe, by the last part of the code path that it prints.
struct WslCode {
    const char* code;
    AdviceKey cause;
};

std::span<const WslCode> wslCodes();

// The key of a known code's advice, empty for any other.
AdviceKey causeOfWslCode(std::string_view codePath);

// The code path in a text that wsl.exe printed ("Wsl/Service/RegisterDistro/E_INVALIDARG"), empty when there is none.
// Words around it are in the user's language, the path never is.
std::string wslCodePath(std::string_view text);

} // namespace kelpctl
