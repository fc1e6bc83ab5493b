#include "terminal/mask.h"

#include "host/text.h"

#include <algorithm>
#include <exception>

namespace kelpctl {
namespace {

namespace json = boost::json;

constexpr std::size_t shortestSecret = 4;
constexpr std::size_t shortestName = 2;
constexpr char masked[] = "***";

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// Letters, digits and "_", and all that is not ASCII.
bool belongsToWord(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    const char letter = lowered(character);
    return byte >= 0x80 || character == '_' || (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9');
}

std::string inUtf16(const std::string& ascii)
{
    std::string bytes;
    for (const char character : ascii) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

std::string inUtf16OfUtf8(const std::string& text)
{
    std::string bytes;
    try {
        for (const char16_t unit : foundation::core::text::cvt_utf8_ustring(text)) {
            bytes += static_cast<char>(unit & 0xFF);
            bytes += static_cast<char>(unit >> 8);
        }
    } catch (const std::exception&) {
        // What is no UTF-8 has no such form.
        return {};
    }
    return bytes;
}

} // namespace

void Mask::add(const std::string& text, bool isName)
{
    patterns_.push_back({text, 1, isName});
    if (const std::string wide = inUtf16OfUtf8(text); !wide.empty()) {
        patterns_.push_back({wide, 2, isName});
    }
    std::stable_sort(patterns_.begin(), patterns_.end(),
                     [](const Pattern& one, const Pattern& other) { return one.bytes.size() > other.bytes.size(); });
}

void Mask::addSecret(const std::string& secret)
{
    if (secret.size() >= shortestSecret) {
        add(secret, false);
    } else if (!secret.empty()) {
        wholeTexts_.push_back(secret);
    }
}

void Mask::addName(const std::string& name)
{
    if (name.size() >= shortestName) {
        add(name, true);
    }
}

bool Mask::foundAt(std::string_view text, std::size_t position, const Pattern& pattern)
{
    const std::string_view here = text.substr(position, pattern.bytes.size());
    if (!pattern.isName) {
        return here == pattern.bytes;
    }
    const bool same = std::equal(here.begin(), here.end(), pattern.bytes.begin(), pattern.bytes.end(),
                                 [](char one, char other) { return lowered(one) == lowered(other); });
    const std::size_t end = position + pattern.bytes.size();
    const bool before = position >= pattern.width && belongsToWord(text[position - pattern.width]);
    const bool behind = end < text.size() && belongsToWord(text[end]);
    return same && !before && !behind;
}

std::string Mask::applied(std::string_view bytes) const
{
    std::string result;
    for (std::size_t position = 0; position < bytes.size();) {
        const auto found = std::find_if(patterns_.begin(), patterns_.end(),
                                        [&](const Pattern& pattern) { return foundAt(bytes, position, pattern); });
        if (found == patterns_.end()) {
            result += bytes[position++];
        } else {
            result += found->width == 1 ? std::string(masked) : inUtf16(masked);
            position += found->bytes.size();
        }
    }
    return result;
}

// What is masked may begin within the part that is kept, and end behind it.
std::string Mask::beginningOf(std::string_view bytes) const
{
    constexpr std::size_t kept = std::size_t{1} << 20;
    constexpr std::size_t more = std::size_t{1} << 16;
    return withoutCredentials(applied(bytes.substr(0, kept + more))).substr(0, kept);
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as what kelpctl has put together
json::value Mask::appliedToTexts(const json::value& value) const
{
    if (const json::string* text = value.if_string()) {
        const bool whole =
            std::find(wholeTexts_.begin(), wholeTexts_.end(), std::string_view(*text)) != wholeTexts_.end();
        return json::string(whole ? std::string(masked) : withoutCredentials(applied(std::string_view(*text))));
    }
    json::value result = value;
    if (json::array* array = result.if_array()) {
        for (json::value& each : *array) {
            each = appliedToTexts(each);
        }
    }
    if (json::object* object = result.if_object()) {
        for (auto& each : *object) {
            each.value() = appliedToTexts(each.value());
        }
    }
    return result;
}

std::string withoutCredentials(std::string_view text)
{
    constexpr std::string_view start = "://";
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t found = text.find(start, position);
        if (found == std::string_view::npos) {
            return result.append(text.substr(position));
        }
        const std::size_t begin = found + start.size();
        result.append(text.substr(position, begin - position));
        const std::size_t end = text.find_first_of("/ \t\r\n\"'", begin);
        const std::size_t at = text.substr(begin, end - begin).rfind('@');
        position = begin;
        if (at != std::string_view::npos) {
            result += masked;
            position = begin + at;
        }
    }
    return result;
}

} // namespace kelpctl
