// The commands that print a result.
#pragma once

#include "console.h"
#include "output.h"
#include "request.h"

namespace kelpctl {

// Does what the request says; `command` is any but "exec" and "help". Throws what the library throws, and Failure.
Outcome perform(const Request& request, Console& console);

} // namespace kelpctl
