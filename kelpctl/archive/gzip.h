// What gzip has packed. libarchive unpacks it too, but compares neither checksum nor length (as of 3.6).
#pragma once

#include "archive/unpacking.h"

#include <memory>

namespace kelpctl {

// As gzip itself reads: one member after the other, and what stands behind the last is no matter.
std::unique_ptr<Unpacking> unpackGzip(PackedBytes& packed);

} // namespace kelpctl
