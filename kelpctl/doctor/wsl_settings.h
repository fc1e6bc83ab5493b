// What others have decided about WSL: policies, the user's .wslconfig, distributions of other accounts.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

std::span<const Check> wslSettingChecks();

} // namespace kelpctl
