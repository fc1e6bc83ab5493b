// What kept exec's program from running.
#pragma once

#include "asking/run.h"
#include "failure/report.h"
#include "request/request.h"

#include <optional>

namespace kelpctl {

// What to tell of a run of the program that has ended; nothing when the status is the program's own. Asks the backend
// further.
std::optional<Report> diagnosis(const Run& inside, const Context& context);

} // namespace kelpctl
