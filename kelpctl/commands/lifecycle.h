// The commands that create, start, stop and remove the environment.
#pragma once

#include "failure/output.h"
#include "request/request.h"

namespace kelpctl {

// Through the interpreter's gateways.
Outcome setup(const Context& context);
Outcome teardown(const Context& context);

// Through the library's functions.
Outcome provision(const Context& context);
Outcome removeEnvironment(const Context& context);

// On the container. Under WSL there is none, and nothing to do.
Outcome start(const Context& context);
Outcome stop(const Context& context);

} // namespace kelpctl
