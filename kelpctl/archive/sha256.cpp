#include "archive/sha256.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace kelpctl {
namespace {

constexpr std::size_t blockSize = 64;

constexpr std::array<std::uint32_t, blockSize> constants = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t wordAt(const char* bytes)
{
    std::uint32_t word = 0;
    for (int index = 0; index < 4; ++index) {
        word = word << 8U | static_cast<unsigned char>(bytes[index]);
    }
    return word;
}

} // namespace

void Sha256::process(const char* block)
{
    std::array<std::uint32_t, blockSize> words{};
    for (std::size_t index = 0; index < 16; ++index) {
        words[index] = wordAt(block + index * 4);
    }
    for (std::size_t index = 16; index < blockSize; ++index) {
        const std::uint32_t early = words[index - 15];
        const std::uint32_t late = words[index - 2];
        words[index] = words[index - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3U) +
                       words[index - 7] + (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10U);
    }
    auto [a, b, c, d, e, f, g, h] = state_;
    for (std::size_t index = 0; index < blockSize; ++index) {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                                    constants[index] + words[index];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
    for (std::size_t index = 0; index < added.size(); ++index) {
        state_[index] += added[index];
    }
}

void Sha256::add(std::string_view bytes)
{
    length_ += bytes.size();
    if (!rest_.empty()) {
        const std::size_t taken = std::min(bytes.size(), blockSize - rest_.size());
        rest_.append(bytes.substr(0, taken));
        bytes.remove_prefix(taken);
        if (rest_.size() < blockSize) {
            return;
        }
        process(rest_.data());
        rest_.clear();
    }
    while (bytes.size() >= blockSize) {
        process(bytes.data());
        bytes.remove_prefix(blockSize);
    }
    rest_.assign(bytes);
}

std::string Sha256::finish()
{
    constexpr std::size_t lengthSize = 8;
    const std::uint64_t bits = length_ * 8;
    std::string end(1, '\x80');
    end.append((2 * blockSize - lengthSize - 1 - rest_.size()) % blockSize, '\0');
    for (std::size_t index = 0; index < lengthSize; ++index) {
        end += static_cast<char>(bits >> (8 * (lengthSize - 1 - index)) & 0xFFU);
    }
    add(end);
    std::string text;
    for (const std::uint32_t word : state_) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            text += "0123456789abcdef"[word >> static_cast<unsigned int>(shift) & 0xFU];
        }
    }
    return text;
}

} // namespace kelpctl
