// How results and failures are written.
#pragma once

#include "failure/report.h"
#include "terminal/console.h"

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>

#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// What a command has to say: the same for people and for programs.
struct Outcome {
    std::vector<std::string> lines;
    boost::json::value result;
    std::optional<Report> failure = {};
    // That of the program that exec ran; kelpctl ends with it, too.
    std::optional<int> status = {};
    // What is worth knowing of a command that did its work. Programs find it in the result.
    std::vector<Report> notes = {};
};

// Of notes, for the result.
boost::json::array noteList(const std::vector<Report>& notes);

// For people: the lines to standard output, notes and a failure to standard error.
void writeText(Console& console, const std::string& command, const Outcome& outcome);

// For programs: {"command", "ok", "result", "error"} on one line of standard output; docs/use/kelpctl.md describes
// it. Text that is not UTF-8 is made so with U+FFFD.
void writeJson(Console& console, const std::string& command, const Outcome& outcome);

} // namespace kelpctl
