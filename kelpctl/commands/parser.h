// The rows of the commands as CLI11 reads them. One source includes it, because that takes the compiler seconds.
#pragma once

#include "request/request.h"

#include <string>
#include <vector>

namespace kelpctl {

// Reads what stands in front of "--". Throws UsageError.
Request parse(std::vector<std::string> arguments);

} // namespace kelpctl
