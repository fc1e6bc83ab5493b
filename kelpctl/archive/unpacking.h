// The bytes behind an archive's packing.
#pragma once

#include "archive/packed_bytes.h"

#include <string_view>

namespace kelpctl {

class Unpacking {
public:
    Unpacking() = default;
    virtual ~Unpacking() = default;
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;

    // The next block, valid until the next call; empty at the end, when all checksums were right. Throws Unreadable.
    virtual std::string_view next() = 0;
};

} // namespace kelpctl
