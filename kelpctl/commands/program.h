// The program as a function.
#pragma once

#include "asking/run.h"
#include "terminal/console.h"

#include <string>
#include <vector>

namespace kelpctl {

// Reads the arguments behind the program's name, does what they say and gives back the exit status. Lets no exception
// out.
int run(const std::vector<std::string>& arguments, Console& console, const Programs& programs);

// The same with this process's own arguments and streams.
int runProgram(int argc, const char* const argv[]);

} // namespace kelpctl
