// The commands that print a result.
#pragma once

#include "context.h"
#include "output.h"

namespace kelpctl {

// Does what the request says; `command` is any but "exec". Throws what the library throws, and Failure.
Outcome perform(const Context& context);

} // namespace kelpctl
