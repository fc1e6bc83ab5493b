// Memory straight from the system.
#pragma once

#include <cstddef>
#include <span>
#include <utility>

namespace orb::process::detail {

// A block of memory that goes back to the system when it is released. An allocator may keep what is given back to it,
// which would count twice while a large output is moved from one place to another. Bytes that are never written cost
// address space only.
class Pages {
public:
    // Throws std::bad_alloc.
    explicit Pages(std::size_t size);
    Pages(Pages&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;
    ~Pages();

    std::span<char> bytes() const noexcept { return bytes_; }

private:
    std::span<char> bytes_;
};

} // namespace orb::process::detail
