// The commands that print a result.
#pragma once

#include "failure/output.h"
#include "request/context.h"

namespace kelpctl {

// Does what the request says; `command` is any but "exec". Throws what the library throws, and Failure.
Outcome perform(const Context& context);

} // namespace kelpctl
