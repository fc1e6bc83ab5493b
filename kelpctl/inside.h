// Running a program inside the environment.
#pragma once

#include "console.h"
#include "request.h"

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
// given with "-e" stands as it is.
//
// Docker: the variables are options. "-i" comes first, so that standard input reaches the program; "-t" as well
// when all standard streams are terminals, so that a shell is usable. Both stand in front of the container, where the
// library puts its own options.
//
// Throws DOCKER_NOT_AVAILABLE when there is no Docker client.
InsideCommand insideCommand(const Request& request, bool interactive);

// The user's own list in front of the library's, the variables of the library's list left out of it.
std::string mergedWslenv(const std::string& inherited, const std::string& list);

// Runs the program and gives back its exit status. A failure of wsl.exe itself is told on standard error
// (with "--json" as an object on standard output), and its status passed on.
int runInside(const Request& request, Console& console);

} // namespace kelpctl
