// Command lines: the one text that Windows starts a program with, and the argument vector that it stands for.
#pragma once

#include "host/export.h"

#include <string>
#include <vector>

namespace orb::process::detail {

// Splits a command line into an argument vector by the rules of the Microsoft C runtime, on every system: blanks and
// tabs separate, double quotes group, 2n backslashes before a quote are n backslashes, 2n+1 are n and a literal quote;
// in the program name backslashes are literal. A blank or empty line gives an empty vector.
KORVANE_HOST_API std::vector<std::string> getRunArguments(const std::string& commandLine);

// The opposite: a command line that getRunArguments, and any Windows program, splits into the same vector. Arguments
// are quoted only when they must be. Throws std::invalid_argument for a program name with a double quote.
KORVANE_HOST_API std::string joinArguments(const std::vector<std::string>& arguments);

} // namespace orb::process::detail
