// The doctor's findings as one table.
#pragma once

#include "doctor/verdict.h"

#include <string>
#include <vector>

namespace kelpctl {

// The lines, plain text with the words "ok", "note" and "PROBLEM" in a column of their own, which also have colours when
// there may be some. Everything found on the computer is written so that a terminal obeys nothing in it.
std::vector<std::string> doctorTable(const Examination& found, const Judgement& judgement, const Names& names,
                                     bool colours);

// What became of a candidate: "taken: it answers \"-v\"".
std::string fateText(const Candidate& candidate, std::chrono::seconds timeLimit);

// "1.5 MiB (1572864 bytes)".
std::string sizeText(std::uintmax_t bytes);

} // namespace kelpctl
