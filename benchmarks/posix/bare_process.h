// posix_spawn and poll with nothing else.
#pragma once

#include "contenders.h"

namespace benchmarks {

// What posix_spawn is given.
struct BareProcess {
    const char* file = nullptr;
    char* const* arguments = nullptr;
    char* const* environment = nullptr;
};

// Starts it with both streams on pipes, reads them until they end, and waits.
Captured runBare(const BareProcess& process, const Sizes& expected = {});

} // namespace benchmarks
