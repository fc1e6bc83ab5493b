// The one entry through which the library runs child processes.
#pragma once

#include "host/process.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace orb::lvm::detail {

using orb::process::detail::RunResult;

struct RunRequest {
    // When not empty it is split into the argument vector, and `arguments` is not used.
    std::string commandLine;
    std::vector<std::string> arguments;
    orb::process::detail::Environment environment;
    std::string workingDir;
    bool detach = false;
};

RunResult runRequest(const RunRequest& request);

// Run the program `arguments` begins with, in the caller's folder or in `directory`, and wait for it. Whatever its
// status, it is returned; an exception of the process service passes through.
RunResult runCommand(const std::vector<std::string>& arguments);
RunResult runCommand(std::initializer_list<std::string> arguments);
RunResult runCommand(const std::vector<std::string>& arguments, const std::string& directory);

} // namespace orb::lvm::detail
