// What the user is told about a failure: what it means, and one thing to do next. All of it is data.
#pragma once

#include "failure/advice_table.h"
#include "request/request.h"

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

} // namespace kelpctl
