// What surrounds the backends: what is asked for, and the temporary folder.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

// Backend, release, installation root, and the names that follow from them.
std::span<const Check> environmentChecks();
std::span<const Check> temporaryFolderChecks();

} // namespace kelpctl
