#include "terminal/text.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <sstream>

namespace kelpctl {
namespace {

constexpr char hexDigits[] = "0123456789ABCDEF";
constexpr char redaction[] = "***";

unsigned char byteOf(char character)
{
    return static_cast<unsigned char>(character);
}

void appendHex(std::string& result, char character)
{
    result += "\\x";
    result += hexDigits[byteOf(character) / 16];
    result += hexDigits[byteOf(character) % 16];
}

bool isControl(char character)
{
    return byteOf(character) < 0x20 || byteOf(character) == 0x7F;
}

// U+0080 to U+009F in UTF-8; some terminals obey them like escape sequences.
bool startsHighControl(std::string_view text)
{
    return text.size() >= 2 && byteOf(text[0]) == 0xC2 && byteOf(text[1]) >= 0x80 && byteOf(text[1]) <= 0x9F;
}

void appendEscaped(std::string& result, char character)
{
    if (character == '\n') {
        result += "\\n";
    } else if (character == '\r') {
        result += "\\r";
    } else if (character == '\t') {
        result += "\\t";
    } else if (isControl(character)) {
        appendHex(result, character);
    } else {
        result += character;
    }
}

// The longest of the secrets that begins at `position`; 0 when none does.
std::size_t secretLength(std::string_view text, std::size_t position, const std::vector<std::string>& secrets)
{
    std::size_t length = 0;
    for (const std::string& secret : secrets) {
        if (text.substr(position).starts_with(secret)) {
            length = std::max(length, secret.size());
        }
    }
    return length;
}

// The bytes behind the first one of a UTF-8 sequence: how many there are, and the limits of the first of them, which
// keep out overlong sequences, surrogates and values above U+10FFFF. All others are 0x80 to 0xBF.
struct Tail {
    std::size_t length;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

Tail tailBehind(unsigned char first)
{
    switch (first) {
    case 0xE0:
        return {2, 0xA0, 0xBF};
    case 0xED:
        return {2, 0x80, 0x9F};
    case 0xF0:
        return {3, 0x90, 0xBF};
    case 0xF4:
        return {3, 0x80, 0x8F};
    default:
        break;
    }
    if (first < 0xC2 || first > 0xF4) {
        return {0};
    }
    return {first < 0xE0 ? std::size_t{1} : first < 0xF0 ? std::size_t{2} : std::size_t{3}};
}

struct Sequence {
    std::size_t length;
    bool whole;
};

// The sequence at the front of a text that is not empty, as far as it goes.
Sequence firstSequence(std::string_view text)
{
    if (byteOf(text[0]) < 0x80) {
        return {1, true};
    }
    Tail tail = tailBehind(byteOf(text[0]));
    std::size_t length = 1;
    while (length <= tail.length && length < text.size() && byteOf(text[length]) >= tail.lowest &&
           byteOf(text[length]) <= tail.highest) {
        tail = {tail.length};
        ++length;
    }
    return {length, tail.length > 0 && length == tail.length + 1};
}

} // namespace

std::string escaped(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const bool highControl = startsHighControl(text);
        if (highControl) {
            appendHex(result, text[0]);
            appendHex(result, text[1]);
        } else {
            appendEscaped(result, text[0]);
        }
        text.remove_prefix(highControl ? 2 : 1);
    }
    return result;
}

std::vector<std::string> displayLines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        while (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines.push_back(escaped(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    while (!lines.empty() && lines.back().empty()) {
        lines.pop_back();
    }
    return lines;
}

std::string fileName(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string hexadecimal(std::int32_t status)
{
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += hexDigits[(static_cast<std::uint32_t>(status) >> shift) & 15U];
    }
    return text;
}

std::string redacted(std::string_view text, const std::vector<std::string>& secrets)
{
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = secretLength(text, position, secrets);
        if (length == 0) {
            result += text[position++];
        } else {
            result += redaction;
            position += length;
        }
    }
    return result;
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::string wellFormed(std::string_view text)
{
    constexpr char replacement[] = "\xEF\xBF\xBD";
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Sequence sequence = firstSequence(text);
        result += sequence.whole ? text.substr(0, sequence.length) : replacement;
        text.remove_prefix(sequence.length);
    }
    return result;
}

std::string sizeText(std::uintmax_t bytes)
{
    const std::string exact = plural(bytes, "byte");
    const std::string rounded = shortSizeText(bytes);
    return rounded == exact ? exact : rounded + " (" + exact + ")";
}

std::string shortSizeText(std::uintmax_t bytes)
{
    constexpr std::array units = {"KiB", "MiB", "GiB", "TiB"};
    constexpr std::uintmax_t step = 1024;
    std::uintmax_t unit = 1;
    const char* name = nullptr;
    for (const char* next : units) {
        if (bytes / unit >= step) {
            unit *= step;
            name = next;
        }
    }
    if (name == nullptr) {
        return plural(bytes, "byte");
    }
    const std::uintmax_t tenths = bytes / unit * 10 + (bytes % unit * 10 + unit / 2) / unit;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " " + name;
}

std::string plural(std::uintmax_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string isoTime(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<milliseconds>(time - day));
    std::ostringstream text;
    text << std::setfill('0') << std::setw(4) << static_cast<int>(date.year()) << '-' << std::setw(2)
         << static_cast<unsigned>(date.month()) << '-' << std::setw(2) << static_cast<unsigned>(date.day()) << 'T'
         << std::setw(2) << clock.hours().count() << ':' << std::setw(2) << clock.minutes().count() << ':'
         << std::setw(2) << clock.seconds().count() << '.' << std::setw(3) << clock.subseconds().count() << 'Z';
    return text.str();
}

} // namespace kelpctl
