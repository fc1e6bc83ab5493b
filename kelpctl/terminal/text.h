// Text for people and logs.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// What makes a terminal write in bold, and as before.
inline constexpr char boldSequence[] = "\x1b[1m";
inline constexpr char plainSequence[] = "\x1b[0m";

// Control characters written out: \n, \r, \t, any other as \xNN. The result stays on one line, and a terminal obeys
// nothing in it.
std::string escaped(std::string_view text);

// The lines of a text, each escaped, without blank lines at the end.
std::vector<std::string> displayLines(std::string_view text);

// The last part of a path of either system.
std::string fileName(const std::string& path);

// "0x0000007D": the 32 bits of a status.
std::string hexadecimal(std::int32_t status);

// `text` with each occurrence of each secret replaced by "***". Empty secrets are ignored.
std::string redacted(std::string_view text, const std::vector<std::string>& secrets);

// Letters of ASCII in lower case. WSL takes names, sections and keys that differ in case only for the same.
std::string lowered(std::string text);

// UTF-8 as it is. For anything else U+FFFD: one for the longest beginning of a sequence that could have become
// well-formed, one for each byte that begins none.
std::string wellFormed(std::string_view text);

// "1.5 MiB (1572864 bytes)".
std::string sizeText(std::uintmax_t bytes);

// "1.5 MiB".
std::string shortSizeText(std::uintmax_t bytes);

// "1 thing", "2 things".
std::string plural(std::uintmax_t count, const std::string& noun);

// "2026-11-21T10:15:02.113Z".
std::string isoTime(std::chrono::system_clock::time_point time);

} // namespace kelpctl
