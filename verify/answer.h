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

struct EncodingNames {
    const char* inReport;
    // Behind what a person reads of a stream; nothing for bytes as they come.
    const char* behindStream;
};

inline EncodingNames namesOf(Encoding encoding)
{
    switch (encoding) {
    case Encoding::utf16:
        return {"UTF-16LE", " in UTF-16LE"};
    case Encoding::console:
        return {"console", " in the code page of consoles"};
    case Encoding::bytes:
        break;
    }
    return {"bytes", ""};
}

} // namespace verify
