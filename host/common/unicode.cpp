#include "unicode.h"

namespace foundation::core::unicode {
namespace {

bool isHighSurrogate(char32_t value)
{
    return value >= 0xD800 && value <= 0xDBFF;
}

bool isLowSurrogate(char32_t value)
{
    return value >= 0xDC00 && value <= 0xDFFF;
}

// How many bytes a sequence has, by its first byte; 0 for a byte that cannot be first.
std::size_t sequenceLength(unsigned char first)
{
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

// The smallest code point that needs so many bytes; anything smaller is overlong.
char32_t smallest(std::size_t length)
{
    constexpr char32_t limits[] = {0, 0, 0x80, 0x800, 0x10000};
    return limits[length];
}

} // namespace

Decoded decodeUtf8(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = sequenceLength(first);
    if (length == 1) {
        return {first, 1, true};
    }
    if (length == 0 || text.size() < length) {
        return {};
    }
    char32_t codePoint = first & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        codePoint = (codePoint << 6) | (byte & 0x3FU);
    }
    if (codePoint < smallest(length) || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        return {};
    }
    return {codePoint, length, true};
}

Decoded decodeUtf16(std::u16string_view text)
{
    const char32_t first = text[0];
    if (!isHighSurrogate(first) && !isLowSurrogate(first)) {
        return {first, 1, true};
    }
    if (isLowSurrogate(first) || text.size() < 2 || !isLowSurrogate(text[1])) {
        return {first, 1, false};
    }
    const char32_t second = text[1];
    return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 2, true};
}

void appendUtf8(std::string& text, char32_t codePoint)
{
    const auto tail = [codePoint](unsigned shift) { return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0 | (codePoint >> 6));
        text += tail(0);
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0 | (codePoint >> 12));
        text += tail(6);
        text += tail(0);
    } else {
        text += static_cast<char>(0xF0 | (codePoint >> 18));
        text += tail(12);
        text += tail(6);
        text += tail(0);
    }
}

void appendUtf16(std::u16string& text, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
    } else {
        text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

} // namespace foundation::core::unicode
