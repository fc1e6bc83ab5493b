// What this computer has of what the product works with, found as the product finds it.
#pragma once

#include "answer.h"

#include <boost/json/object.hpp>

#include <string>
#include <vector>

namespace verify {

struct Machine {
    // The first that answers, or that exists; empty where there is none.
    std::string wsl;
    Answer wslVersion;
    // It tells its version, or its distributions: builds that come with Windows do not know their version.
    bool wslUsable = false;
    std::string docker;
    Answer dockerVersion;
    bool engine = false;
};

Machine examineMachine();

// Versions as they were told, for the report.
boost::json::object describePrograms(const Machine& machine);

// The names of the distributions, those included that are being installed.
std::vector<std::string> distributions(const std::string& wsl);
// The one that wsl.exe marks as the default; empty when there is none.
std::string defaultDistribution(const std::string& wsl);
// The repositories that the engine has images of.
std::vector<std::string> images(const std::string& docker);

} // namespace verify
