// A distribution's disk: where it is by what WSL has written down, and whether it is there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kelpctl {

enum class DiskState {
    present,
    // The drive that it was on is there, and it is not.
    gone,
    // It cannot be looked at, or its drive is not there either.
    unreachable,
};

struct Disk {
    // UTF-8.
    std::string path;
    DiskState state = DiskState::unreachable;
    // Of a present one; nothing when the system does not tell.
    std::optional<std::uintmax_t> bytes;
};

// Nothing when no such distribution is registered for this user, when it is not installed yet, or keeps its files
// elsewhere (WSL 1). Throws nothing.
std::optional<Disk> diskOf(const std::string& distribution);

} // namespace kelpctl
