#include "findings.h"

#include "host/messages.h"
#include "orb/lvm.h"

namespace kelpctl {

const char* severityName(Severity severity)
{
    return severity == Severity::problem ? "problem" : "note";
}

// Errors of the library have their texts in the host's catalogue.
std::string findingText(const Finding& finding, Names names)
{
    const Advice& advice = adviceFor(finding.key);
    if (*advice.text == '\0') {
        return foundation::core::message::localisedText({orb::container_support::catalogue, finding.key, {}});
    }
    names.subject = finding.subject;
    return adviceText(advice, names);
}

std::string findingNextStep(const Finding& finding, Names names)
{
    names.subject = finding.subject;
    return adviceNextStep(adviceFor(finding.key), names);
}

} // namespace kelpctl
