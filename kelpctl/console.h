// What kelpctl works with on the outside.
#pragma once

#include "host/process.h"

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace kelpctl {

struct Console {
    // Results, and everything else.
    std::ostream& out;
    std::ostream& error;
    bool errorIsTerminal = false;
    // Standard input, output and error are all terminals.
    bool interactive = false;
    // Text may be coloured.
    bool outColours = false;
    bool errorColours = false;
    // Runs a program and captures what it prints.
    std::function<orb::process::detail::RunResult(const std::vector<std::string>& arguments,
                                                  const std::map<std::string, std::string>& environment)>
        run;
    // Runs a program with these streams and gives back its exit status.
    std::function<std::int32_t(const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment)>
        runAttached;
};

} // namespace kelpctl
