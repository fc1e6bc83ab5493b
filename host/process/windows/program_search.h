// Where a program lies.
#pragma once

#include "variables.h"

#include <string>

namespace orb::process::detail {

// The absolute path of the program as run() promises it; bare names are looked up in the PATH of `variables`.
// Throws std::system_error when no folder has it.
std::wstring findProgram(const std::string& program, const Variables& variables);

} // namespace orb::process::detail
