// The table of facts: what the product takes for granted about the programs and the system that it stands on.
#pragma once

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace verify {

struct Fact {
    std::string id;
    std::string claim;
    // What becomes of the product where the claim is wrong.
    std::string follows;
    // What must be there, or be asked for, to look at it.
    std::vector<std::string> needs;
    // Why the claim is known to be wrong under Wine and its stand-ins; empty where it is not.
    std::string differsUnderWine;
    boost::json::array steps;
    // What is done afterwards, whatever came of the steps.
    boost::json::array finally;
};

// The facts of a file as the build makes it. Throws what the file system and Boost.JSON throw.
std::vector<Fact> readFacts(const std::filesystem::path& file);

// The text under a name; empty when there is none.
std::string textAt(const boost::json::object& object, const char* name);

// The number under a name, or the fallback.
std::int64_t numberAt(const boost::json::object& object, const char* name, std::int64_t fallback);

// The whole file.
std::string contentOf(const std::filesystem::path& file);

} // namespace verify
