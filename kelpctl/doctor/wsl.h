// WSL, as found on this computer.
#pragma once

#include "asking/wsl.h"
#include "doctor/candidate.h"
#include "request/context.h"

#include <string>
#include <vector>

namespace kelpctl {

struct WslExamination {
    // The last look-up that was tried.
    Run lookUp;
    std::vector<Candidate> candidates;
    // What the library uses: a candidate, or the place where Windows keeps it.
    std::string executable;
    // The first line of what a candidate answered, by its number alone. Empty when none did.
    std::string version;
    // "-l -q", by which the library tells what there is.
    Run listing;
    // The table of states; not asked when the listing has failed.
    Run table;
    std::vector<Distribution> distributions;

    bool fallsBack() const;
};

// By the programs that the library's own check runs, and the table of states.
WslExamination examineWsl(const Context& context);

} // namespace kelpctl
