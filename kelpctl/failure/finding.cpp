#include "failure/finding.h"

#include "terminal/json.h"

#include "host/messages.h"
#include "orb/lvm.h"

namespace kelpctl {

// Errors of the library have their texts in the host's catalogue.
std::string findingText(const Finding& finding, Names names)
{
    const Advice& advice = adviceFor(finding.key);
    if (*advice.text == '\0') {
        return foundation::core::message::localisedText({orb::container_support::catalogue, finding.key.text(), {}});
    }
    names.subject = finding.subject;
    return adviceText(advice, names);
}

std::string findingNextStep(const Finding& finding, Names names)
{
    names.subject = finding.subject;
    return adviceNextStep(adviceFor(finding.key), names);
}

Mark markOf(Severity severity)
{
    return severity == Severity::problem ? Mark::problem : Mark::note;
}

void printNextSteps(const std::vector<Finding>& findings, const Names& names, TableLines& table)
{
    table.section("next steps");
    for (const Finding& finding : findings) {
        table.text(markOf(finding.severity), findingText(finding, names));
        table.text(Mark::none, findingNextStep(finding, names));
    }
}

boost::json::object findingObject(const Finding& finding, const Names& names)
{
    return {{"severity", finding.severity == Severity::problem ? "problem" : "note"},
            {"identifier", finding.key.text()},
            {"about", finding.about},
            {"subject", textOrNull(finding.subject)},
            {"message", findingText(finding, names)},
            {"next", findingNextStep(finding, names)}};
}

} // namespace kelpctl
