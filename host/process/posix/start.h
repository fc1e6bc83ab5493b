// Starting a program.
#pragma once

#include "host/process.h"

#include <array>
#include <string>
#include <vector>

#include <sys/types.h>

namespace orb::process::detail {

// In place of a descriptor: the null device.
constexpr int nullDevice = -1;

struct StartRequest {
    const std::vector<std::string>& arguments;
    const Environment& environment;
    const std::string& workingDir;
    // What becomes the program's standard input, output and error. Above 2, or the stream's own number.
    std::array<int, 3> streams{nullDevice, nullDevice, nullDevice};
    // The program gets a session of its own, and so a process group whose id is the program's, out of reach of our
    // terminal and its signals.
    bool ownGroup = false;
};

// Gives the process's id. The program starts with no signal blocked or ignored and with no descriptor but the three.
// Throws std::system_error.
pid_t startProgram(const StartRequest& request);

} // namespace orb::process::detail
