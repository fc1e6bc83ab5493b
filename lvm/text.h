// Reading what programs print.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace orb::lvm::detail {

// The blanks of the "C" locale. Bytes of 0x80 and above, parts of UTF-8 characters, are never blank.
bool isBlank(char character);

// The text without its leading and trailing blanks.
std::string_view trim(std::string_view text);

// The lines of the text, trimmed, without those that are empty then.
std::vector<std::string> trimmedLines(std::string_view text);

// The words of the text: what blanks, tabs and line ends separate.
std::vector<std::string> words(std::string_view text);

// Whether one of the names equals `name` exactly.
bool contains(const std::vector<std::string>& names, const std::string& name);

// A list in a log line: each element between square brackets, elements separated by one blank. It is formatted when it
// is streamed, so it costs nothing while the line is not written. The list must live until then.
struct Bracketed {
    const std::vector<std::string>& elements;
};
std::ostream& operator<<(std::ostream& stream, const Bracketed& list);

} // namespace orb::lvm::detail
