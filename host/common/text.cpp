#include "host/text.h"

#include "console_text.h"
#include "unicode.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace foundation::core::text {
namespace {

[[noreturn]] void throwMalformed(const char* what)
{
    throw std::system_error(std::make_error_code(std::errc::illegal_byte_sequence), what);
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const unicode::Decoded decoded = unicode::decodeUtf8(text);
        if (!decoded.valid) {
            return false;
        }
        text.remove_prefix(decoded.length);
    }
    return true;
}

} // namespace

std::string cvt_ustring_utf8(const char16_t* text, std::size_t length)
{
    std::u16string_view rest(text, length);
    std::string result;
    result.reserve(length);
    while (!rest.empty()) {
        const unicode::Decoded decoded = unicode::decodeUtf16(rest);
        if (!decoded.valid) {
            throwMalformed("text is not well-formed UTF-16");
        }
        unicode::appendUtf8(result, decoded.codePoint);
        rest.remove_prefix(decoded.length);
    }
    return result;
}

std::u16string cvt_utf8_ustring(std::string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const unicode::Decoded decoded = unicode::decodeUtf8(text);
        if (!decoded.valid) {
            throwMalformed("text is not well-formed UTF-8");
        }
        unicode::appendUtf16(result, decoded.codePoint);
        text.remove_prefix(decoded.length);
    }
    return result;
}

std::string cvt_ustring_string(std::u16string_view text)
{
    return cvt_ustring_utf8(text);
}

std::u16string cvt_string_ustring(std::string_view text)
{
    // The converters of file-system layers count in int.
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw std::system_error(std::make_error_code(std::errc::value_too_large), "text is too long for a path");
    }
    return isUtf8(text) ? cvt_utf8_ustring(text) : fromConsole(text);
}

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isUtf8WithoutNul(std::string_view line)
{
    return line.find('\0') == std::string_view::npos && isUtf8(line);
}

char16_t unitAt(std::string_view bytes, std::size_t position)
{
    const auto low = static_cast<unsigned char>(bytes[position]);
    const auto high = static_cast<unsigned char>(bytes[position + 1]);
    return static_cast<char16_t>(low | (high << 8));
}

// Whether a line of UTF-16LE begins here. A zero byte tells: one in the line, or right after its newline; or, where the
// text has no ASCII but its line end, one further on that would be the high byte of a unit.
bool beginsUtf16Line(std::string_view captured, std::size_t length)
{
    constexpr std::size_t longestLine = 4096;
    const std::size_t nul = captured.substr(0, longestLine).find('\0');
    return nul != std::string_view::npos && (nul <= length || nul % 2 == 1);
}

// A log line or a message may put a label in front of what a program printed: ASCII that ends in "= ".
std::size_t labelLength(std::string_view line)
{
    const auto isPrintable = [](char character) { return character >= ' ' && character <= '~'; };
    const auto end = std::find_if_not(line.begin(), line.end(), isPrintable);
    const std::size_t mark = std::string_view(line.begin(), end).rfind("= ");
    return mark == std::string_view::npos ? 0 : mark + 2;
}

// Takes one line of UTF-16LE, its line end included, from the front of `rest`.
std::u16string takeUtf16Line(std::string_view& rest)
{
    std::u16string line;
    while (rest.size() >= 2 && !line.ends_with(u'\n')) {
        line += unitAt(rest, 0);
        rest.remove_prefix(2);
    }
    if (rest.size() == 1 && !line.ends_with(u'\n')) {
        line += static_cast<char16_t>(replacement);
        rest.remove_prefix(1);
    }
    return line;
}

void appendReadable(std::string& result, std::u16string_view line)
{
    while (!line.empty()) {
        const unicode::Decoded decoded = unicode::decodeUtf16(line);
        if (decoded.codePoint != 0) {
            unicode::appendUtf8(result, decoded.valid ? decoded.codePoint : replacement);
        }
        line.remove_prefix(decoded.length);
    }
}

void appendReadable(std::string& result, std::string_view line)
{
    while (!line.empty()) {
        const unicode::Decoded decoded = unicode::decodeUtf8(line);
        unicode::appendUtf8(result, decoded.valid ? decoded.codePoint : replacement);
        line.remove_prefix(decoded.length);
    }
}

// "\r\n", and the "\r\r\n" of old versions of wsl.exe, become "\n".
std::string withPlainLineEnds(const std::string& text)
{
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        if (character == '\n') {
            while (!result.empty() && result.back() == '\r') {
                result.pop_back();
            }
        }
        result += character;
    }
    return result;
}

} // namespace

std::string readable(std::string_view captured)
{
    std::string result;
    while (!captured.empty()) {
        const std::size_t newline = captured.find('\n');
        const std::size_t length = newline == std::string_view::npos ? captured.size() : newline + 1;
        const std::string_view line = captured.substr(0, length);
        const bool nulFollows = captured.substr(length).starts_with('\0');
        if (!nulFollows && isUtf8WithoutNul(line)) {
            result += line;
            captured.remove_prefix(length);
        } else if (beginsUtf16Line(captured, length)) {
            const std::size_t label = labelLength(line);
            result += line.substr(0, label);
            captured.remove_prefix(label);
            appendReadable(result, takeUtf16Line(captured));
        } else {
            appendReadable(result, line);
            captured.remove_prefix(length);
        }
    }
    return withPlainLineEnds(result);
}

} // namespace foundation::core::text
