// What kelpctl works with on the outside.
#pragma once

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
    // Runs a program with these streams and gives back its exit status.
    std::function<std::int32_t(const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment)>
        runAttached;
};

} // namespace kelpctl
