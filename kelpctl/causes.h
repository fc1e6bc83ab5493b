// What is behind a failure: by the status and the code of the program that failed, and by asking further. Never by the
// words that a program printed, which are in the user's language.
#pragma once

#include "errors.h"

#include <string>

namespace kelpctl {

// The key of the cause's advice, empty when there is nothing more to say.
std::string causeOf(const std::string& identifier, const std::optional<Run>& run, const Context& context);

// What an interrupted run may have left behind.
std::string causeOfInterruption(const std::optional<Run>& run);

// The folder that an import was given.
std::string importFolder(const std::optional<Run>& run);

// Why `wsl.exe` failed at something else than running a program.
std::string causeOfWslStatus(const Run& run);

} // namespace kelpctl
