// What the examination means for `setup`. Pure: facts in, findings out.
#pragma once

#include "doctor/examination.h"
#include "failure/advice.h"

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
    AdviceKey key;
    std::string subject;
    Place place = Place::none;
};

// "problem" or "note".
const char* severityName(Severity severity);

// What it means and what to do, with the subject of the finding in place of that of `names`.
std::string findingText(const Finding& finding, Names names);
std::string findingNextStep(const Finding& finding, Names names);

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

} // namespace kelpctl
