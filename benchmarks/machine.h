// What benchmarks ask of the system they run on.
#pragma once

#include "contenders.h"

#include <cstddef>

namespace benchmarks {

// A program that ends at once.
Arguments quickProgram();

// How much work is measured at a time: runs of that program, and MiB printed a few bytes at a time. A start and a write
// take Wine a hundred times as long as Linux.
extern const int quickRuns;
extern const std::size_t smallWritesSize;

// How often something is measured that is usually measured so often.
int repetitions(int usual);

// The memory that this process has in use, and the most that it ever had, in bytes.
struct Memory {
    std::size_t now = 0;
    std::size_t peak = 0;
};
Memory memoryInUse();

} // namespace benchmarks
