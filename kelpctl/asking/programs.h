// The programs that kelpctl starts itself. This is the one seam: tests put answers of their own behind it.
#pragma once

#include "asking/run.h"

#include <functional>

namespace kelpctl {

// Each throws what the process service throws for a program that cannot be started.
struct Programs {
    // Runs a program in a folder, the current one when that is empty, and captures what it prints.
    std::function<Run(const std::vector<std::string>& arguments, const orb::process::detail::Environment& environment,
                      const std::string& folder)>
        run;
    // Runs a program with this process's own streams and gives back its exit status.
    std::function<std::int32_t(const std::vector<std::string>& arguments,
                               const orb::process::detail::Environment& environment)>
        runAttached;
};

// Those of the process service.
Programs systemPrograms();

// Asks a program something: runs it, and throws nothing when that fails. wsl.exe is asked for UTF-8 and for no warnings.
Run ask(const Programs& programs, const std::vector<std::string>& arguments, const std::string& folder = {});

} // namespace kelpctl
