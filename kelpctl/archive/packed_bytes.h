// The bytes of an archive's file as they lie on the disk.
#pragma once

#include "archive/facts.h"

#include <cstdint>
#include <functional>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelpctl {

// Thrown when an archive cannot be read further.
class Unreadable : public std::runtime_error {
public:
    Unreadable(Damage damage, const std::string& reason) : std::runtime_error(reason), damage_(damage) {}

    Damage damage() const noexcept { return damage_; }

private:
    Damage damage_;
};

class PackedBytes {
public:
    // `watch` sees each block on its way; what it throws ends the reading.
    PackedBytes(std::istream& stream, std::function<void(std::string_view)> watch);

    // The next block, valid until the next call; empty at the end. Throws Unreadable.
    std::string_view next();
    // Of the blocks so far.
    std::uintmax_t count() const { return count_; }
    // Whether more was wanted than there is.
    bool ended() const { return ended_; }

private:
    std::istream& stream_;
    std::function<void(std::string_view)> watch_;
    std::string buffer_;
    std::uintmax_t count_ = 0;
    bool ended_ = false;
};

} // namespace kelpctl
