// The environment variables that a program is given.
#pragma once

#include "environment_block.h"
#include "host/process.h"

namespace orb::process::detail {

// This process's variables, including the hidden ones that hold each drive's current folder, with those of
// `environment` in their place or added. SystemRoot is always there, since programs cannot load the system's own
// libraries without it. Throws std::invalid_argument for text that is not UTF-8.
Variables variablesWith(const Environment& environment);

} // namespace orb::process::detail
