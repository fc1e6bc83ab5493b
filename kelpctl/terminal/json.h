// JSON values: what commands print for programs, and what programs print.
#pragma once

#include <boost/json/value.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// Null for nothing.
template <class Value>
boost::json::value orNull(const std::optional<Value>& value)
{
    return value ? boost::json::value(*value) : nullptr;
}

// Null for an empty text.
boost::json::value textOrNull(const std::string& text);

boost::json::array arrayOf(const std::vector<std::string>& texts);

// Null when the text is no JSON, and when its objects and arrays stand deeper in each other than 32.
boost::json::value parsedJson(std::string_view text);

// The text under the name in an object; empty when there is none.
std::string textAt(const boost::json::value& value, const char* name);

// One line without its end. Text that is not UTF-8 is made so with U+FFFD.
std::string jsonLine(const boost::json::value& value);

} // namespace kelpctl
