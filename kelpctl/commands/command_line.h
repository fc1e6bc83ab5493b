// The command line, read into a request.
#pragma once

#include "failure/failure.h"
#include "request/request.h"

#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// Reads the arguments behind the program's name. Throws UsageError.
Request parseCommandLine(const std::vector<std::string>& arguments);

// Whether "--json" stands among the arguments, in front of "--": errors must be reported the right way also
// when the command line cannot be read.
bool requestsJson(const std::vector<std::string>& arguments);

// The value of "--language" in front of "--", also when the command line cannot be read.
std::optional<std::string> requestedLanguage(const std::vector<std::string>& arguments);

} // namespace kelpctl
