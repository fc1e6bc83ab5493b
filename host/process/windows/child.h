// A program that was started, until its end has been taken note of.
#pragma once

#include "handle.h"
#include "host/process.h"

namespace orb::process::detail {

using foundation::core::system::Handle;

// Ends the program, unless it has exited, when it is destroyed.
class Child {
public:
    explicit Child(Handle process) : process_(std::move(process)) {}
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Signalled when the program exits.
    HANDLE process() const noexcept { return process_.get(); }

    bool hasExited() const noexcept;

    void kill() const noexcept;

    // Waits for the program's end. Throws std::system_error.
    ExitReport wait();

private:
    Handle process_;
};

} // namespace orb::process::detail
