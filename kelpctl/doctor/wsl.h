// WSL: its program, the distribution, and the address of the host on its network.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

std::span<const Check> wslChecks();

// The chosen distribution, null when there is none.
const Distribution* expectedDistribution(const Examination& found);

Presence presenceInWsl(const Examination& found);

} // namespace kelpctl
