// Starting a program.
#pragma once

#include "handle.h"
#include "host/process.h"

#include <array>
#include <string>
#include <vector>

namespace orb::process::detail {

using foundation::core::system::Handle;

struct StartRequest {
    const std::vector<std::string>& arguments;
    const Environment& environment;
    const std::string& workingDir;
    // What becomes the program's standard input, output and error, closed here as soon as the program has them.
    std::array<Handle, 3> streams;
    // The program gets a job of its own.
    bool ownGroup = false;
    // Without it a program that writes to a console gets none that could be seen.
    bool callersConsole = false;
};

// Gives the process, which is in the job from its first moment when there is one. Throws std::system_error, and std::invalid_argument for text that is not UTF-8.
Handle startProgram(StartRequest request, HANDLE job = nullptr);

} // namespace orb::process::detail
