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

// A sink that writes to the pipe.
std::unique_ptr<InputSink> makeInputSink(Descriptor writeEnd);

} // namespace orb::process::detail
