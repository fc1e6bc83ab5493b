// Where a program lies.
#pragma once

#include "host/process.h"

#include <string>

namespace orb::process::detail {

// The path of the program as run() promises it, fit for use after a change of the current folder.
// Throws std::system_error when no folder of the PATH has it; the code is EACCES when one has it but may not run it.
std::string findProgram(const std::string& program, const Environment& environment);

} // namespace orb::process::detail
