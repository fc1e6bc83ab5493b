// Where the floor puts a stream: memory of the right size, taken before anything comes and not touched before.
#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>

namespace benchmarks {

class Room {
public:
    explicit Room(std::size_t expected) : size_(expected + spare), bytes_(new char[size_]) {}

    char* free() const { return bytes_.get() + used_; }
    std::size_t freeSize() const
    {
        return used_ < size_ ? size_ - used_ : throw std::runtime_error("the floor is full");
    }
    std::size_t used() const { return used_; }
    void add(std::size_t size) { used_ += size; }

private:
    // For what programs print that were expected to print nothing.
    static constexpr std::size_t spare = 16384;

    std::size_t size_;
    std::size_t used_ = 0;
    std::unique_ptr<char[]> bytes_;
};

} // namespace benchmarks
