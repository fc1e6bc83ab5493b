// SHA-256, as FIPS 180-4 describes it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelpctl {

class Sha256 {
public:
    void add(std::string_view bytes);
    // Of all that was added, in hexadecimal digits in lower case; the last call.
    std::string finish();

private:
    void process(const char* block);

    std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                           0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    // What has not filled a block yet.
    std::string rest_;
    std::uint64_t length_ = 0;
};

} // namespace kelpctl
