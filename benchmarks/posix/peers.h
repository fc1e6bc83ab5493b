// The libraries of Debian's packages that run programs too, each used as its documentation shows.
#pragma once

#include "contenders.h"

namespace benchmarks {

Captured runLibuv(const Arguments& arguments, const Sizes& expected);
Captured runBoostProcessV1(const Arguments& arguments, const Sizes& expected);
Captured runBoostProcessV2(const Arguments& arguments, const Sizes& expected);

} // namespace benchmarks
