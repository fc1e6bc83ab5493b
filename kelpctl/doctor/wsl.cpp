#include "doctor/wsl.h"

#include "asking/gateways.h"
#include "terminal/text.h"

#include "lvm/commands.h"

#include <algorithm>
#include <exception>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

// The library's own search and question, by the programs that it runs.
std::vector<Run> runsOfTheLibrary(const Context& context)
{
    const std::size_t before = context.journal.runs().size();
    try {
        callCheck();
    } catch (const std::exception&) {
        // The run that was not started is in the journal.
    }
    std::vector<Run> runs = context.journal.runs();
    runs.erase(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(before));
    return runs;
}

Fate fateOfAsked(const Run& run)
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? Fate::answers : Fate::failed;
    case Ending::timedOut:
        return Fate::timedOut;
    case Ending::notStarted:
        return Fate::notStarted;
    case Ending::notAsked:
    case Ending::interrupted:
        break;
    }
    return Fate::notAsked;
}

// The library asks one candidate after the other until one answers.
void addCandidate(WslExamination& wsl, const Run& run)
{
    wsl.candidates.push_back({run.arguments.front(), fateOfAsked(run), run.succeeded(), run});
    if (run.succeeded()) {
        wsl.version = versionNumber(run.output);
    }
}

void addCandidatesNotAsked(WslExamination& wsl)
{
    std::size_t asked = wsl.candidates.size();
    for (const std::string& line : displayLines(wsl.lookUp.output)) {
        if (line.find_first_not_of(' ') == std::string::npos) {
            continue;
        }
        if (asked > 0) {
            --asked;
        } else {
            wsl.candidates.push_back({line, Fate::notAsked, false, {}});
        }
    }
}

} // namespace

bool WslExamination::fallsBack() const
{
    return std::none_of(candidates.begin(), candidates.end(), [](const Candidate& each) { return each.taken; });
}

WslExamination examineWsl(const Context& context)
{
    WslExamination wsl;
    for (const Run& run : runsOfTheLibrary(context)) {
        switch (rules::commandOf(run.arguments)) {
        case rules::Command::wslLookUp:
            wsl.lookUp = run;
            break;
        case rules::Command::wslVersion:
            addCandidate(wsl, run);
            break;
        case rules::Command::wslCheck:
            wsl.listing = run;
            wsl.executable = run.arguments.front();
            break;
        default:
            break;
        }
    }
    if (wsl.lookUp.succeeded()) {
        addCandidatesNotAsked(wsl);
    }
    if (wsl.listing.succeeded()) {
        wsl.table = ask(context.programs, distributionQuestion(wsl.executable));
        wsl.distributions =
            distributionsIn(wsl.listing.output, wsl.table.succeeded() ? wsl.table.output : std::string());
    }
    return wsl;
}

} // namespace kelpctl
