// Bits that nobody can guess.
#pragma once

#include <array>

namespace foundation::core::path {

using RandomBits = std::array<unsigned char, 16>;

// 128 bits from the system. Throws std::system_error when it has none to give.
RandomBits randomBits();

} // namespace foundation::core::path
