// Something that a look at the computer or at an archive has found, worth telling the user.
#pragma once

#include "failure/advice.h"
#include "terminal/table.h"

#include <boost/json/object.hpp>

#include <string>
#include <vector>

namespace kelpctl {

// Whether a finding would keep `setup` from working, or is worth knowing only.
enum class Severity { note, problem };

struct Finding {
    Severity severity = Severity::note;
    // Of its advice.
    AdviceKey key;
    std::string subject;
    // The check that it belongs to.
    const char* about = "environment";
};

// What it means and what to do, with its subject in place of that of `names`.
std::string findingText(const Finding& finding, Names names);
std::string findingNextStep(const Finding& finding, Names names);

Mark markOf(Severity severity);

// A section of the table: each finding with its mark, and what to do.
void printNextSteps(const std::vector<Finding>& findings, const Names& names, TableLines& table);

// docs/use/kelpctl.schema.json describes it.
boost::json::object findingObject(const Finding& finding, const Names& names);

} // namespace kelpctl
