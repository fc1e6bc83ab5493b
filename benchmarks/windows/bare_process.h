// CreateProcess and two pipes with nothing else.
#pragma once

#include "contenders.h"

#include <string>

namespace benchmarks {

// What CreateProcess is given.
struct BareProcess {
    std::wstring file;
    std::wstring commandLine;
    // Empty: the caller's. Otherwise as the system takes it, with its closing zeros.
    std::wstring environment;
    // Empty: the caller's.
    std::wstring folder;
};

// Starts it with both streams on pipes, reads them until they end, and waits.
Captured runBare(const BareProcess& process, const Sizes& expected = {});

} // namespace benchmarks
