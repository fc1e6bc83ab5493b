// What the systems do in their own way, behind the functions of host/process.h.
#pragma once

#include "host/process.h"

#include <string>
#include <vector>

namespace orb::process::detail {

// Starts a program, captures what it prints and waits for its end.
RunResult runProgram(const std::vector<std::string>& arguments, const Environment& environment,
                     const std::string& workingDir, const RunOptions& options);

// Starts a program that nobody waits for.
void startDetached(const std::vector<std::string>& arguments, const Environment& environment,
                   const std::string& workingDir);

// Runs a program with this process's own streams. Gives its exit status.
std::int32_t runProgramAttached(const std::vector<std::string>& arguments, const Environment& environment,
                                const std::string& workingDir);

} // namespace orb::process::detail
