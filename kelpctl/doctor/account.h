// Who runs kelpctl.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

std::span<const Check> accountChecks();

} // namespace kelpctl
