// Docker's client: the program that the library's rules choose.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

// The parts of its check.
void examineClient(const Context& context, Examination& found);
void judgeClient(const Examination& found, Findings& findings);
void describeClient(const Examination& found, CheckOutput& out);

// Whether there is one that can be started.
bool hasClient(const Examination& found);

} // namespace kelpctl
