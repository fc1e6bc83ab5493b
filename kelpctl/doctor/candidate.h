// Programs among which the library chooses.
#pragma once

#include "asking/run.h"

#include <string>

namespace kelpctl {

// Why a program that the look-up gave was taken or not.
enum class Fate {
    // wsl.exe
    answers,
    failed,
    notStarted,
    timedOut,
    notAsked,
    // docker.exe
    regularFile,
    hostsOwn,
    missing,
    link,
    notAFile,
    notReadable,
    notLookedAt,
};

struct Candidate {
    // As the look-up printed it.
    std::string path;
    Fate fate = Fate::notAsked;
    bool taken = false;
    // What it said to "-v".
    Run answer;
};

} // namespace kelpctl
