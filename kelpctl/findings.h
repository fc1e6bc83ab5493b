// What the examination has found that the user should know of.
#pragma once

#include "advice.h"

#include <string>
#include <vector>

namespace kelpctl {

// Whether it would keep `setup` from working, or is worth knowing only.
enum class Severity { note, problem };

// The row of the table that a finding is about.
enum class Place { none, image, wsl, distribution, client, engine, dockerImage, container, archives, temporary };

struct Finding {
    Severity severity = Severity::note;
    // Of its advice.
    std::string key;
    std::string subject;
    Place place = Place::none;
};

// "problem" or "note".
const char* severityName(Severity severity);

// What it means and what to do, with the subject of the finding in place of that of `names`.
std::string findingText(const Finding& finding, Names names);
std::string findingNextStep(const Finding& finding, Names names);

} // namespace kelpctl
