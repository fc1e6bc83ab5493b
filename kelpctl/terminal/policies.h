// What whoever looks after this computer has decided about WSL. Chosen by CMake from windows/ and posix/.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelpctl {

struct Policy {
    // Such as "AllowWSL".
    std::string name;
    std::uint32_t value = 0;
};

// Those that are set, by name. Throws nothing.
std::vector<Policy> wslPolicies();

} // namespace kelpctl
