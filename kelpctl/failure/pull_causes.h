// Why `docker pull` did not get an image from its registry.
#pragma once

#include "asking/run.h"
#include "failure/advice_table.h"

namespace kelpctl {

// By words of the client and of the engine, which are English everywhere, but are no contract: a hint, to be shown beside
// what they said. Empty when there is no hint.
AdviceKey causeOfPull(const Run& pull);

} // namespace kelpctl
