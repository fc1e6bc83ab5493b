// A program that was started, until its end has been taken note of.
#pragma once

#include "descriptor.h"
#include "host/run_options.h"
#include "start.h"

#include <cstdint>
#include <string>

#include <sys/types.h>

namespace orb::process::detail {

// Waits for the end of a process that this one has started. Gives 0 or the system's error.
int waitForEnd(pid_t id, int& status);

// Kills the program, and waits for its end, when it is destroyed before wait(). One with a group of its own is killed with
// all that is in it.
class Child {
public:
    // Starts the program. Throws what startProgram() throws.
    explicit Child(const StartRequest& request);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Becomes readable when the program exits. -1 where the system has no such thing: then hasExited() is to be
    // asked now and then.
    int exitEvent() const noexcept { return exitEvent_.get(); }

    std::uint32_t id() const noexcept { return static_cast<std::uint32_t>(id_); }

    bool hasExited() const;

    // What is left of the group, too, after the program has exited; but not after wait().
    void kill() const noexcept;

    // Waits for the program's end. Throws std::system_error with ECHILD when the host lets the system forget how its
    // programs end (by ignoring SIGCHLD).
    ExitReport wait();

private:
    void killGroup() const noexcept;

    std::string program_;
    bool ownGroup_;
    pid_t id_;
    Descriptor exitEvent_;
    bool waited_ = false;
};

} // namespace orb::process::detail
