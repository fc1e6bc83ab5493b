#include "machine.h"

#include <algorithm>

#include <windows.h>

#include <psapi.h>

namespace benchmarks {

const int quickRuns = 1;
const std::size_t smallWritesSize = 2;

int repetitions(int usual)
{
    return std::max(usual / 8, 5);
}

Arguments quickProgram()
{
    return {BENCHMARK_CHILD, "exit"};
}

Memory memoryInUse()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return {counters.WorkingSetSize, counters.PeakWorkingSetSize};
}

} // namespace benchmarks
