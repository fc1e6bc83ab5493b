// One code point at a time, strictly.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::core::unicode {

struct Decoded {
    char32_t codePoint = 0;
    // What to skip: the whole sequence, or one code unit of a sequence that is not well-formed.
    std::size_t length = 1;
    bool valid = false;
};

// The first code point of a text that is not empty.
Decoded decodeUtf8(std::string_view text);
Decoded decodeUtf16(std::u16string_view text);

void appendUtf8(std::string& text, char32_t codePoint);
void appendUtf16(std::u16string& text, char32_t codePoint);

} // namespace foundation::core::unicode
