// Running a program inside the environment.
#pragma once

#include "failure/output.h"
#include "request/request.h"

#include <map>
#include <string>
#include <vector>

namespace kelpctl {

// What to start on this side.
struct InsideCommand {
    std::vector<std::string> arguments;
    // Added to this process's own environment.
    std::map<std::string, std::string> environment;
};

// The command for exec.
//
// WSL: the variables are in the environment under their bare names, and WSLENV lists them. A WSLENV of
// the user's own shell is put in front of the library's list, without the variables that the library lists itself; one
// given with "-e" stands as it is. WSL_UTF8 makes wsl.exe's own messages UTF-8, unless the user has set it.
//
// Docker: the variables are options. "-i" comes first, so that standard input reaches the program; "-t" as well
// when all standard streams are terminals, so that a shell is usable. Both stand in front of the container, where the
// library puts its own options.
//
// Throws DOCKER_NOT_AVAILABLE when there is no Docker client.
InsideCommand insideCommand(const Request& request, bool interactive);

// The user's own list in front of the library's, the variables of the library's list left out of it.
std::string mergedWslenv(const std::string& inherited, const std::string& list);

// Runs the program, whose exit status is the outcome's. What kept it from running is the failure. With "--json" its output
// is captured, and becomes the result.
Outcome exec(const Context& context);

} // namespace kelpctl
