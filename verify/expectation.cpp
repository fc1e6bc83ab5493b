#include "expectation.h"

#include "system.h"

#include "host/text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value_to.hpp>

#include <algorithm>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace verify {

namespace json = boost::json;

namespace {

constexpr std::size_t longest = 600;

std::string hexOf(const std::string& bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

// A byte order mark and an odd number of bytes are none of it.
std::optional<std::string> fromUtf16(const std::string& bytes)
{
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        units +=
            static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    if (bytes.size() % 2 != 0 || units.starts_with(u'\uFEFF')) {
        return std::nullopt;
    }
    try {
        return foundation::core::text::cvt_ustring_utf8(units);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

bool onlyWarnings(const std::string& bytes)
{
    std::istringstream lines(foundation::core::text::readable(bytes));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && !line.starts_with("wsl: ")) {
            return false;
        }
    }
    return true;
}

// Comparing the expression itself with megabytes would take the C++ library's whole stack.
bool matchesWhole(const std::string& text, const std::string& expression)
{
    constexpr std::size_t most = 20000;
    return text.size() <= most && std::regex_match(text, std::regex(expression));
}

bool holds(const std::string& bytes, const std::string& text, const std::string& condition, const json::value& value,
           const Names& names)
{
    if (condition == "bytes") {
        return static_cast<std::int64_t>(bytes.size()) == value.as_int64();
    }
    const auto wanted = json::value_to<std::string>(value);
    if (condition == "hex") {
        return hexOf(bytes) == wanted;
    }
    if (condition == "matches") {
        return matchesWhole(text, names.filledExpression(wanted));
    }
    const std::string part = names.filled(wanted);
    if (condition == "begins") {
        return text.starts_with(part);
    }
    if (condition == "ends") {
        return text.ends_with(part);
    }
    if (condition == "contains" || condition == "lacks") {
        return (text.find(part) != std::string::npos) == (condition == "contains");
    }
    throw std::invalid_argument("no such condition: " + condition);
}

bool streamHolds(const std::string& bytes, Encoding encoding, const json::value& wanted, const Names& names)
{
    if (wanted.is_string() && wanted.as_string() == "<warnings>") {
        return onlyWarnings(bytes);
    }
    const std::optional<std::string> text = textOf(bytes, encoding);
    if (!text) {
        return false;
    }
    if (wanted.is_string()) {
        return *text == names.filled(json::value_to<std::string>(wanted));
    }
    const json::object& conditions = wanted.as_object();
    return std::all_of(conditions.begin(), conditions.end(), [&](const auto& each) {
        return holds(bytes, *text, std::string(each.key()), each.value(), names);
    });
}

bool statusHolds(std::int32_t status, const json::value& wanted)
{
    if (wanted.is_string()) {
        return status != 0;
    }
    if (wanted.is_array()) {
        const json::array& all = wanted.as_array();
        return std::any_of(all.begin(), all.end(), [&](const json::value& each) { return each == status; });
    }
    return wanted == status;
}

class Comparison {
public:
    void add(bool asClaimed, const std::string& what, const json::value& expected, const std::string& got)
    {
        if (!asClaimed) {
            difference_.expected += (difference_.expected.empty() ? "" : "; ") + what + " " + json::serialize(expected);
            difference_.got += (difference_.got.empty() ? "" : "; ") + what + " " + got;
        }
    }

    std::optional<Difference> result() const
    {
        return difference_.expected.empty() ? std::nullopt : std::optional(difference_);
    }

private:
    Difference difference_;
};

} // namespace

std::optional<std::string> textOf(const std::string& bytes, Encoding encoding)
{
    switch (encoding) {
    case Encoding::utf16:
        return fromUtf16(bytes);
    case Encoding::console:
        return fromConsole(bytes);
    case Encoding::bytes:
        break;
    }
    return bytes;
}

std::string shown(const std::string& bytes, Encoding encoding)
{
    std::string text;
    try {
        text = textOf(bytes, encoding).value_or("");
        foundation::core::text::cvt_utf8_ustring(text);
    } catch (const std::system_error&) {
        text.clear();
    }
    const bool readable = bytes.empty() || (!text.empty() && text.find('\0') == std::string::npos);
    std::string all = readable ? json::serialize(json::value(text)) : "the bytes " + hexOf(bytes);
    if (all.size() > longest) {
        all = foundation::core::text::readable(all.substr(0, longest)) + "... (" + std::to_string(bytes.size()) +
              " bytes)";
    }
    return all;
}

std::optional<Difference> compare(const Answer& answer, const json::object& expect, Encoding encoding,
                                  const Names& names)
{
    Comparison comparison;
    for (const auto& each : expect) {
        const std::string what(each.key());
        const json::value& wanted = each.value();
        if (what == "status") {
            comparison.add(statusHolds(answer.status, wanted), what, wanted, std::to_string(answer.status));
        } else if (what == "terminated") {
            comparison.add(answer.terminated == wanted.as_bool(), what, wanted, answer.terminated ? "true" : "false");
        } else if (what == "output") {
            comparison.add(streamHolds(answer.output, encoding, wanted, names), what + namesOf(encoding).behindStream,
                           wanted, shown(answer.output, encoding));
        } else if (what == "errors") {
            comparison.add(streamHolds(answer.errors, Encoding::bytes, wanted, names), what, wanted,
                           foundation::core::text::readable(shown(answer.errors, Encoding::bytes)));
        } else {
            throw std::invalid_argument("no such expectation: " + what);
        }
    }
    return comparison.result();
}

} // namespace verify
