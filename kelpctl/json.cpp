#include "json.h"

#include "text.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

namespace kelpctl {

boost::json::value orNull(const std::string& text)
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

std::string jsonLine(const boost::json::value& value)
{
    // Quotation marks end a sequence that has been cut off, so all texts can be looked at in one.
    return wellFormed(boost::json::serialize(value));
}

} // namespace kelpctl
