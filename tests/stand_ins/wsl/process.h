#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace stand_in {

// A process told apart from a later one with the same number by the time it was started.
struct ProcessId {
    pid_t number = 0;
    std::uint64_t started = 0;
};

ProcessId identify(pid_t number);
ProcessId thisProcess();

// False for one that has ended, even where nobody has collected its status yet.
bool isAlive(const ProcessId& process);

// Kills it and waits until it is gone.
void killAndWait(const ProcessId& process);

// Waits for a child and returns its raw wait status.
int waitForChild(pid_t child);

// Milliseconds of a clock that all processes of the machine share.
std::int64_t now();

void sleepMilliseconds(long duration);

} // namespace stand_in
