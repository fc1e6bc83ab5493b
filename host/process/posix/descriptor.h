// A file descriptor with an owner.
#pragma once

#include <utility>

namespace orb::process::detail {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int value) noexcept : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    // -1 when there is none.
    int get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ >= 0; }

    // Leaves errno as it is.
    void close() noexcept;

private:
    int value_ = -1;
};

} // namespace orb::process::detail
