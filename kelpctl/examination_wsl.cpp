#include "examination.h"

#include "errors.h"
#include "gateways.h"
#include "interruption.h"
#include "text.h"

#include "host/text.h"

#include <algorithm>
#include <exception>
#include <sstream>

namespace kelpctl {
namespace {

constexpr char versionQuestion[] = "-v";
constexpr char listQuestion[] = "-l";

bool isLookUp(const Run& run)
{
    return run.arguments.size() == 2 && run.arguments[1] == "wsl.exe";
}

bool asks(const Run& run, const char* question)
{
    return run.arguments.size() >= 2 && run.arguments[1] == question;
}

// The library's own search and question, by the programs that it runs.
std::vector<Run> runsOfTheLibrary(const Context& context)
{
    const std::size_t before = context.journal.runs().size();
    try {
        callCheck();
    } catch (const std::exception&) {
        // The run that was not started is in the journal.
    }
    if (interrupted()) {
        throw Failure("INTERRUPTED");
    }
    std::vector<Run> runs = context.journal.runs();
    runs.erase(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(before));
    return runs;
}

Fate fateOf(const Reply& reply)
{
    switch (reply.ending) {
    case Ending::answered:
        return Fate::answers;
    case Ending::failed:
        return Fate::failed;
    case Ending::timedOut:
        return Fate::timedOut;
    case Ending::notStarted:
        return Fate::notStarted;
    case Ending::notAsked:
        break;
    }
    return Fate::notAsked;
}

// The library asks one candidate after the other until one answers.
void addCandidate(WslExamination& wsl, const Reply& reply)
{
    wsl.candidates.push_back({reply.arguments.front(), fateOf(reply), reply.good(), reply});
    if (reply.good()) {
        wsl.version = versionNumber(reply.output);
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

std::vector<std::string> namesIn(const std::string& listing)
{
    std::istringstream stream(listing);
    std::vector<std::string> names;
    for (std::string name; stream >> name;) {
        names.push_back(name);
    }
    return names;
}

// The table shows those as well that are being installed or removed, which the listing keeps back.
void examineDistributions(const Context& context, WslExamination& wsl)
{
    wsl.table = question(context, {wsl.executable, "--list", "--all", "--verbose"});
    if (wsl.table.good()) {
        wsl.distributions = distributionTable(wsl.table.output);
    }
    for (const std::string& name : namesIn(wsl.listing.output)) {
        const bool known = std::any_of(wsl.distributions.begin(), wsl.distributions.end(),
                                       [&name](const Distribution& each) { return each.name == name; });
        if (!known) {
            wsl.distributions.push_back({name, {}, 0, false});
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
        if (isLookUp(run)) {
            wsl.lookUp = replyOf(run);
        } else if (asks(run, versionQuestion)) {
            addCandidate(wsl, replyOf(run));
        } else if (asks(run, listQuestion)) {
            wsl.listing = replyOf(run);
            wsl.executable = run.arguments.front();
        }
    }
    if (wsl.lookUp.good()) {
        addCandidatesNotAsked(wsl);
    }
    if (wsl.listing.good()) {
        examineDistributions(context, wsl);
    }
    return wsl;
}

} // namespace kelpctl
