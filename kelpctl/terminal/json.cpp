#include "terminal/json.h"

#include "terminal/text.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

namespace kelpctl {

boost::json::value textOrNull(const std::string& text)
{
    return text.empty() ? nullptr : boost::json::value(text);
}

boost::json::array arrayOf(const std::vector<std::string>& texts)
{
    boost::json::array array(texts.begin(), texts.end());
    return array;
}

boost::json::value parsedJson(std::string_view text)
{
    boost::system::error_code error;
    boost::json::value value = boost::json::parse(text, error);
    return error ? nullptr : value;
}

std::string textAt(const boost::json::value& value, const char* name)
{
    const boost::json::object* object = value.if_object();
    const boost::json::value* found = object != nullptr ? object->if_contains(name) : nullptr;
    return found != nullptr && found->is_string() ? std::string(found->get_string()) : std::string();
}

std::string jsonLine(const boost::json::value& value)
{
    // Quotation marks end a sequence that has been cut off, so all texts can be looked at in one.
    return wellFormed(boost::json::serialize(value));
}

} // namespace kelpctl
