#include "fact.h"

#include <boost/json/parse.hpp>
#include <boost/json/value_to.hpp>

#include <fstream>
#include <iterator>
#include <system_error>

namespace verify {

namespace json = boost::json;

namespace {

json::array arrayAt(const json::object& object, const char* name)
{
    json::array found;
    if (const json::value* const value = object.if_contains(name)) {
        found = value->as_array();
    }
    return found;
}

std::vector<std::string> textsAt(const json::object& object, const char* name)
{
    std::vector<std::string> texts;
    const json::array all = arrayAt(object, name);
    for (const json::value& each : all) {
        texts.push_back(json::value_to<std::string>(each));
    }
    return texts;
}

Fact factOf(const json::object& row)
{
    Fact fact;
    fact.id = textAt(row, "id");
    fact.claim = textAt(row, "claim");
    fact.follows = textAt(row, "follows");
    fact.needs = textsAt(row, "needs");
    if (const json::value* const differs = row.if_contains("differs")) {
        fact.differsUnderWine = textAt(differs->as_object(), "wine");
    }
    fact.steps = arrayAt(row, "steps");
    fact.finally = arrayAt(row, "finally");
    return fact;
}

} // namespace

std::string textAt(const json::object& object, const char* name)
{
    const json::value* const value = object.if_contains(name);
    return value == nullptr ? std::string() : json::value_to<std::string>(*value);
}

std::int64_t numberAt(const json::object& object, const char* name, std::int64_t fallback)
{
    const json::value* const value = object.if_contains(name);
    return value == nullptr ? fallback : value->as_int64();
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::filesystem::filesystem_error("cannot read", file,
                                                std::make_error_code(std::errc::no_such_file_or_directory));
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<Fact> readFacts(const std::filesystem::path& file)
{
    std::vector<Fact> facts;
    const json::value table = json::parse(contentOf(file));
    for (const json::value& row : table.as_array()) {
        facts.push_back(factOf(row.as_object()));
    }
    return facts;
}

} // namespace verify
