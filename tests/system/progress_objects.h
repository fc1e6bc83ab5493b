// What "kelpctl --progress json" writes.
#pragma once

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

// The objects of a run's standard error, which has nothing else.
inline std::vector<boost::json::object> progressObjects(const std::string& standardError)
{
    std::vector<boost::json::object> objects;
    std::istringstream lines(standardError);
    for (std::string line; std::getline(lines, line);) {
        boost::system::error_code error;
        const boost::json::value value = boost::json::parse(line, error);
        if (error || !value.is_object() || !value.get_object().contains("progress")) {
            ADD_FAILURE() << "no progress: " << line;
            continue;
        }
        objects.push_back(value.at("progress").get_object());
    }
    return objects;
}

inline std::set<std::string> statesOf(const std::vector<boost::json::object>& objects)
{
    std::set<std::string> states;
    for (const boost::json::object& object : objects) {
        states.emplace(object.at("state").as_string());
    }
    return states;
}
