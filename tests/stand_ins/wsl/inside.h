#pragma once

#include "environment.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

// Running a program inside a root file system, in namespaces of its own.
namespace stand_in {

struct Program {
    std::filesystem::path root;
    User user;
    // Empty for the user's home.
    std::string folder;
    std::vector<std::string> arguments;
    Variables environment;
};

struct Ending {
    // The direct child's raw wait status.
    int status = 0;
    // Whether programs that it left behind still run inside.
    bool othersLeft = false;
};

// The first process inside: it sets the namespaces up, starts the program, sends its Ending to the descriptor, and
// stays for as long as anything is left inside.
[[noreturn]] void runFirstProcess(const Program& program, int endings);

// Clones a process into new namespaces; returns twice, as fork does.
pid_t cloneIntoNamespaces();

} // namespace stand_in
