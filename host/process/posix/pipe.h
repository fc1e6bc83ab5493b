// Pipes between this process and a program.
#pragma once

#include "descriptor.h"
#include "input_feeder.h"

#include <memory>

namespace orb::process::detail {

// No program inherits either end by itself, and neither is one of the descriptors 0 to 2.
struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

// Throws std::system_error.
Pipe makePipe();

// Gives the pipe room for more, so that a program that prints much and its reader take turns less often. Systems limit
// how much room a user's pipes may have together; then it stays as it is.
void enlarge(const Descriptor& pipe) noexcept;

// A sink that writes to the pipe.
std::unique_ptr<InputSink> makeInputSink(Descriptor writeEnd);

} // namespace orb::process::detail
