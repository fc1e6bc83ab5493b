// What the systems do in their own way, behind run().
#pragma once

#include "host/process.h"

#include <string>
#include <system_error>
#include <vector>

namespace orb::process::detail {

// The program does not exist. Any other failure to start one is a plain std::system_error.
class ProgramNotFound : public std::system_error {
public:
    explicit ProgramNotFound(const std::string& program);
};

// Starts a program, captures what it prints and waits for its end.
RunResult runProgram(const std::vector<std::string>& arguments, const Environment& environment,
                     const std::string& workingDir, const RunOptions& options);

// Starts a program that nobody waits for.
void startDetached(const std::vector<std::string>& arguments, const Environment& environment,
                   const std::string& workingDir);

} // namespace orb::process::detail
