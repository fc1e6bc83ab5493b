// A program that was started, until its end has been taken note of.
#pragma once

#include "handle.h"
#include "host/run_options.h"
#include "start.h"

#include <cstdint>

namespace orb::process::detail {

// Kills the program, and waits for its end, when it is destroyed before wait(). One with a group of its own is killed with
// all that is in it.
class Child {
public:
    // Starts the program. Throws what startProgram() throws.
    explicit Child(StartRequest request);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Signalled when the program exits.
    HANDLE exitEvent() const noexcept { return process_.get(); }

    std::uint32_t id() const noexcept { return GetProcessId(process_.get()); }

    // What is left of the group, too, after the program has exited.
    void kill() const noexcept;

    // Waits for the program's end. Throws std::system_error.
    ExitReport wait();

private:
    // None without a group of its own.
    Handle job_;
    Handle process_;
    bool waited_ = false;
};

} // namespace orb::process::detail
