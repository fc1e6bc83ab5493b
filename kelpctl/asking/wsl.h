// Queries to wsl.exe that change nothing, and what its answers mean.
#pragma once

#include "asking/run.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

struct Distribution {
    std::string name;
    // wsl.exe's own word, which is the same in every language: Running, Stopped, Installing, ... Empty when not known.
    std::string state;
    // 1 or 2; 0 when not known.
    int version = 0;
    bool isDefault = false;
};

struct DistributionList {
    std::vector<Distribution> all;
    // Of "--list -q".
    Run answer;
    // Of the table of states, which has those as well that the list of names keeps back. Not asked when the list has failed.
    Run table;

    // Whether wsl.exe could tell. An empty list that is known means that there are none.
    bool known() const { return answer.succeeded(); }
};

// The distributions, those that are being installed or removed included where wsl.exe shows them. Whether it can tell is
// asked as the library asks.
DistributionList askDistributions(const Programs& programs, const std::string& wslPath);

// The same when "--list -q" has been answered already.
DistributionList askStates(const Programs& programs, const Run& answer);

// Whether it is being installed, removed, converted or exported. Nothing runs in it meanwhile.
bool isBusy(const Distribution& distribution);

// The table that "wsl.exe --list --verbose" prints, by its columns: the header's words are not looked at.
std::vector<Distribution> distributionTable(std::string_view text);

// The first number of the form a.b.c or a.b.c.d, the words around it being in the user's language. Empty when there is
// none.
std::string versionNumber(std::string_view text);

} // namespace kelpctl
