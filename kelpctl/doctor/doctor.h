// The doctor: goes through all checks. Facts first, then what they mean, then both as a table and for programs.
#pragma once

#include "doctor/check.h"

#include <boost/json/object.hpp>

#include <string>
#include <vector>

namespace kelpctl {

// Looks and asks. Changes nothing, throws nothing, and nothing that is missing or broken keeps the rest from being looked
// at. Once the user has interrupted kelpctl no program answers any more.
Examination examine(const Context& context);

enum class Verdict {
    // Something would keep `setup` from working.
    blocked,
    // The environment is there, and `setup` would do nothing.
    exists,
    // It is there and stopped, and `setup` would start it.
    wouldStart,
    // Nothing would keep `setup` from creating it.
    ready,
};

struct Judgement {
    Verdict verdict = Verdict::blocked;
    // Problems first, each kind in the order of the checks. Never empty.
    std::vector<Finding> findings;

    std::size_t problems() const;
};

// What the facts mean for `setup`. Pure: asks nobody.
Judgement judge(const Examination& found);

struct Description {
    // Plain text with the words "ok", "note" and "PROBLEM" in a column of their own, which also have colours when there
    // may be some. Everything found on the computer is written so that a terminal obeys nothing in it.
    std::vector<std::string> lines;
    // For programs; docs/use/kelpctl.schema.json describes it.
    boost::json::object object;
};

// Facts and findings side by side, once as a table and once for programs.
Description describe(const Examination& found, const Judgement& judgement, const Names& names, bool colours);

} // namespace kelpctl
