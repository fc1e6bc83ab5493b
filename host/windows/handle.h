// A system handle with an owner.
#pragma once

#include <utility>

#include <windows.h>

namespace foundation::core::system {

// Both values that the system uses for "no handle" mean none here.
class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE value) noexcept : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { close(); }

    // Null when there is none.
    HANDLE get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != nullptr; }

    // Leaves the last error as it is.
    void close() noexcept
    {
        if (value_ != nullptr) {
            const DWORD error = GetLastError();
            CloseHandle(std::exchange(value_, nullptr));
            SetLastError(error);
        }
    }

private:
    HANDLE value_ = nullptr;
};

} // namespace foundation::core::system
