// Which archive is unpacked how.
#pragma once

#include "archive/kind.h"
#include "archive/unpacking.h"

#include <memory>

namespace kelpctl {

// Of a kind that can be unpacked. `packed` must live as long.
std::unique_ptr<Unpacking> unpackingOf(ArchiveKind kind, PackedBytes& packed);

} // namespace kelpctl
