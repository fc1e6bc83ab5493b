// The examination of this computer.
#pragma once

#include "context.h"
#include "output.h"

namespace kelpctl {

// Looks at everything that provisioning depends on, and changes nothing.
Outcome doctor(const Context& context);

} // namespace kelpctl
