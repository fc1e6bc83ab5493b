// What both systems check before a program is started.
#pragma once

#include "host/process.h"

#include <string>
#include <string_view>
#include <vector>

namespace orb::process::detail {

// Throws std::invalid_argument for what no system can pass to a program faithfully, and for batch files.
void checkArguments(const std::vector<std::string>& arguments, const Environment& environment,
                    const std::string& workingDir);

// Throws std::invalid_argument for a .bat or .cmd file. Windows would hand it to its command interpreter, which reads
// the arguments by other rules and can be made to run a part of them.
void refuseBatchFile(std::string_view program);

// Whether the folder is a drive designator alone, such as "c:".
bool isDriveDesignator(std::string_view folder);

// The text of the error when a program cannot be started.
std::string startFailure(const std::string& program, const std::string& workingDir);

} // namespace orb::process::detail
