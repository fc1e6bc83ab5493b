#include "machine.h"

#include <fstream>

namespace benchmarks {

const int quickRuns = 20;
const std::size_t smallWritesSize = 64;

int repetitions(int usual)
{
    return usual;
}

Arguments quickProgram()
{
    return {"/bin/true"};
}

Memory memoryInUse()
{
    Memory memory;
    std::ifstream status("/proc/self/status");
    for (std::string label; status >> label;) {
        std::size_t kibibytes = 0;
        if (label == "VmRSS:" && status >> kibibytes) {
            memory.now = kibibytes * 1024;
        } else if (label == "VmHWM:" && status >> kibibytes) {
            memory.peak = kibibytes * 1024;
        }
    }
    return memory;
}

} // namespace benchmarks
