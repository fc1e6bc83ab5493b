// A program that was started, until its end has been taken note of.
#pragma once

#include "descriptor.h"
#include "host/process.h"

#include <string>

#include <sys/types.h>

namespace orb::process::detail {

// Waits for the end of a process that this one has started. Gives 0 or the system's error.
int waitForEnd(pid_t id, int& status);

// Kills the program and waits for its end when it is destroyed before reap().
class Child {
public:
    Child(pid_t id, std::string program);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Becomes readable when the program exits. -1 where the system has no such thing: then hasExited() is to be
    // asked now and then.
    int exitDescriptor() const noexcept { return exitDescriptor_.get(); }

    bool hasExited() const;

    void kill() const noexcept;

    // Waits for the program's end. Throws std::system_error with ECHILD when the host lets the system forget how its
    // programs end (by ignoring SIGCHLD).
    ExitReport reap();

private:
    pid_t id_;
    std::string program_;
    Descriptor exitDescriptor_;
    bool reaped_ = false;
};

} // namespace orb::process::detail
