// Docker's engine: whether it answers, what it is, and what decides that it is asked.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

// The parts of its checks.
void examineEngine(const Context& context, Examination& found);
void judgeEngine(const Examination& found, Findings& findings);
void judgeProduct(const Examination& found, Findings& findings);
void describeEngine(const Examination& found, CheckOutput& out);
void examineContext(const Context& context, Examination& found);
void describeContext(const Examination& found, CheckOutput& out);

// Whether there is one that answers.
bool hasEngine(const Examination& found);

} // namespace kelpctl
