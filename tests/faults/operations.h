// Calls the library as a scenario asks for it, and gives back all that can be seen of the call.
#pragma once

#include "model.h"

namespace faults {

// Everything but the calls, which only the stage knows. The archive is for operations that name one.
Outcome performReally(const std::string& operation, const std::string& archive);

// The result alone, without anything that needs memory while the operation runs.
std::string resultOf(const std::string& operation, const std::string& archive);

} // namespace faults
