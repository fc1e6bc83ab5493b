// What the run has found out, for people and for programs.
#pragma once

#include "check.h"

#include <boost/json/object.hpp>

#include <string>
#include <vector>

namespace verify {

struct Run {
    std::string begun; // UTC, as 2026-11-22T08:00:00Z
    std::string facts; // the table's checksum: reports of one table compare
    std::vector<std::string> options;
    std::vector<std::string> removed; // what earlier runs had left
    boost::json::object system;
    boost::json::object programs;
    bool underWine = false;
    std::vector<Result> results;
};

// Whether anything differs.
bool differs(const Run& run);

// The verdict, what differs, and why what was not checked. Lines end with \n.
std::string reportText(const Run& run, const Names& names);

// As verify/report.schema.json says. Values of the run have placeholders.
std::string reportJson(const Run& run, const Names& names);

// Both, and the bytes of each step: the first 64 KiB of each stream.
std::string reportArchive(const Run& run, const Names& names);

} // namespace verify
