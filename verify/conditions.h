// What the user has asked for, and what is there: whether a fact can be looked at.
#pragma once

#include "fact.h"
#include "machine.h"
#include "own.h"

#include <optional>
#include <string>
#include <vector>

namespace verify {

struct Options {
    bool import = false;
    bool docker = false;
    bool slow = false;
    bool ask = false;
    // Only these facts; all when empty.
    std::vector<std::string> only;
    // Where the report goes; empty for the kit's own folder.
    std::string reportFolder;

    // As they are written on the command line.
    std::vector<std::string> written() const;
};

enum class Verdict { asClaimed, differs, knownDifference, notApplicable, notChecked };
inline constexpr int verdictCount = 5;

// The words of the report.
std::string wordOf(Verdict verdict);

struct Obstacle {
    Verdict verdict = Verdict::notChecked;
    std::string why;
};

// What keeps a fact from being looked at; nothing when it can be. Makes the distribution or the image that it needs.
std::optional<Obstacle> obstacleTo(const Fact& fact, const Options& options, const Machine& machine, OwnThings& own);

} // namespace verify
