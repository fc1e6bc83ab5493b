// The most memory that capturing a program's output takes, as a multiple of the output:
// "peak_memory CONTENDER MODE SIZE" prints that number. A process of its own for each contender, since what one allocator
// call leaves behind would count for the next contender.
#include "contenders.h"
#include "machine.h"

#include <algorithm>
#include <cstdio>
#include <exception>

int main(int count, char* arguments[])
{
    const std::vector<benchmarks::Contender> all = benchmarks::contenders();
    const auto contender =
        std::find_if(all.begin(), all.end(), [&](const auto& each) { return count == 4 && each.name == arguments[1]; });
    if (contender == all.end()) {
        std::fputs("usage: peak_memory CONTENDER MODE SIZE\n", stderr);
        return 2;
    }
    try {
        const std::size_t before = benchmarks::memoryInUse().now;
        const std::size_t size = std::stoul(arguments[3]);
        const benchmarks::Sizes expected = benchmarks::sizesOf(arguments[2], size);
        const benchmarks::Captured captured = contender->run({BENCHMARK_CHILD, arguments[2], arguments[3]}, expected);
        if (captured.sizes != expected) {
            std::fputs("peak_memory: the output is not complete\n", stderr);
            return 1;
        }
        std::printf("%.3f\n", static_cast<double>(benchmarks::memoryInUse().peak - before) / static_cast<double>(size));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "peak_memory: %s\n", error.what());
        return 1;
    }
}
