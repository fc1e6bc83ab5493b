#pragma once

#include "environment.h"

#include <array>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

// Running a program inside a root file system, in namespaces of its own.
namespace stand_in {

struct Program {
    std::filesystem::path root;
    User user;
    // Empty for the caller's folder, or for the user's home where that has no counterpart.
    std::string folder;
    // A folder of the machine that is to be there as callersFolderInside() says; empty for none.
    std::string callersFolder;
    // What becomes standard input, output and error.
    std::array<int, 3> streams = {0, 1, 2};
    std::vector<std::string> arguments;
    Variables environment;
};

struct Ending {
    // The direct child's raw wait status.
    int status = 0;
    // Whether programs that it left behind still run inside.
    bool othersLeft = false;
};

// The machine's root is drive Z inside, of which nothing but the caller's folder is there.
std::string callersFolderInside(const std::string& folder);

// The first process inside: it sets the namespaces up, starts the program, sends its Ending to the descriptor, and
// stays for as long as anything is left inside.
[[noreturn]] void runFirstProcess(const Program& program, int endings);

// Clones a process into new namespaces; returns twice, as fork does.
pid_t cloneIntoNamespaces();

} // namespace stand_in
