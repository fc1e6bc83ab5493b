// Loads and unloads libraries, one after the other: "load_library FILE...".
#include "load.h"

#include <cstdio>
#include <exception>

int main(int count, char* arguments[])
{
    try {
        for (int i = 1; i < count; ++i) {
            benchmarks::loadAndUnload(arguments[i]);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_library: %s\n", error.what());
        return 1;
    }
}
