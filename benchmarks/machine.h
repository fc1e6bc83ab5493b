// What benchmarks ask of the system they run on.
#pragma once

#include "contenders.h"

#include <cstddef>

namespace benchmarks {

// A program that ends at once.
Arguments quickProgram();

// The memory that this process has in use, and the most that it ever had, in bytes.
struct Memory {
    std::size_t now = 0;
    std::size_t peak = 0;
};
Memory memoryInUse();

} // namespace benchmarks
