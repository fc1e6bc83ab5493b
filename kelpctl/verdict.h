// What the examination means for `setup`. Pure: facts in, findings out.
#pragma once

#include "examination.h"
#include "findings.h"

#include <vector>

namespace kelpctl {

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
    // Problems first, each kind in the order in which one meets it. Never empty.
    std::vector<Finding> findings;

    std::size_t problems() const;
};

// Only what concerns the chosen backend counts.
Judgement judge(const Examination& found);

// The expected distribution, image or container, null when there is none.
const Distribution* expectedDistribution(const Examination& found);
const DockerImage* expectedImage(const Examination& found);
const DockerContainer* expectedContainer(const Examination& found);

// The names that WSL accepts, and those that Docker accepts for the last part of a repository's name.
bool isWslName(const std::string& name);
bool isDockerName(const std::string& name);

} // namespace kelpctl
