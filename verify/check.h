// Looks at one fact.
#pragma once

#include "conditions.h"
#include "steps.h"

#include <string>
#include <vector>

namespace verify {

struct Result {
    const Fact* fact = nullptr;
    Verdict verdict = Verdict::notChecked;
    // Why it is not checked or not applicable, or what is known of the difference.
    std::string why;
    std::string expected;
    std::string got;
    std::vector<Step> steps;
};

// A known difference that turns out as claimed differs. Never throws for what a step meets: it is not checked then.
Result check(const Fact& fact, Steps& steps, const Names& names, bool underWine);

} // namespace verify
