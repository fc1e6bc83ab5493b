#include "answers.h"

namespace stand_in {
namespace {

std::string withLineEnds(std::string_view text, std::string_view lineEnd)
{
    std::string result;
    for (const char c : text) {
        if (c == '\n') {
            result += lineEnd;
        } else {
            result += c;
        }
    }
    return result;
}

// Decodes one character. A byte that begins none stands for itself.
char32_t takeCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (length == 1 || length > text.size()) {
        text.remove_prefix(1);
        return lead;
    }
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        value = (value << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    text.remove_prefix(length);
    return value;
}

void appendUnit(std::string& bytes, char32_t unit)
{
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>((unit >> 8U) & 0xFFU);
}

std::string utf16le(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (character < 0x10000) {
            appendUnit(bytes, character);
        } else {
            appendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10U));
            appendUnit(bytes, 0xDC00 + ((character - 0x10000) & 0x3FFU));
        }
    }
    return bytes;
}

} // namespace

std::string encoded(std::string_view text, const Encoding& encoding)
{
    std::string whole = withLineEnds(text, encoding.lineEnd);
    return encoding.utf8 ? whole : utf16le(whole);
}

std::string withArgument(std::string_view text, std::string_view argument)
{
    std::string result(text);
    const std::size_t place = result.find("{}");
    return place == std::string::npos ? result : result.replace(place, 2, argument);
}

std::string failureLines(std::string_view text, std::string_view code, std::string_view codeLine)
{
    return std::string(text) + "\n" + (code.empty() ? std::string() : withArgument(codeLine, code) + "\n");
}

std::string failureLines(const KnownFailure& failure, std::string_view argument)
{
    return failureLines(withArgument(failure.text, argument), failure.code, errorCode);
}

std::string relayError(std::int64_t process, std::string_view function, int line, std::string_view call,
                       std::string_view reason)
{
    std::string text = "<3>WSL (" + std::to_string(process) + " - Relay) ERROR: ";
    text += std::string(function) + ":" + std::to_string(line) + ": ";
    return text + std::string(call) + " failed: " + std::string(reason) + "\n";
}

} // namespace stand_in
