// Where results and everything else are written to.
#pragma once

#include <ostream>

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
};

} // namespace kelpctl
