// What came of one step: of a program that ran, of a look at a file, of a measurement.
#pragma once

#include <cstdint>
#include <string>

namespace verify {

struct Answer {
    std::int32_t status = 0;
    // The bytes as they came. What could not be started says why here: "error CODE: TEXT", or "refused: TEXT".
    std::string output;
    std::string errors;
    // It was ended, because its time was up or the step says so.
    bool terminated = false;
    // Why nothing could be found out here; empty when something was.
    std::string unable;
};

// How the bytes of an answer are to be read.
enum class Encoding { bytes, utf16, console };

} // namespace verify
