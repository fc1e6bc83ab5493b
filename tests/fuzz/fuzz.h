// What the fuzz targets share.
#pragma once

#include "host/process.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Ends the program, so that the input is kept, when something does not hold.
void require(bool holds, const char* what);

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

// The text, cut at each `separator`.
std::vector<std::string> split(std::string_view text, char separator);

// The words of the text as the standard library's streams extract them.
std::vector<std::string> streamWords(const std::string& text);

// Whether the C library's own converter takes the text for UTF-8.
bool isUtf8(std::string_view text);

// What every child run of the library comes to.
using Runner = std::function<orb::process::detail::RunResult(const std::vector<std::string>&)>;
void setRunner(Runner given);

} // namespace fuzz
