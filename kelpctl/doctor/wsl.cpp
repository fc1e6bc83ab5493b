#include "doctor/wsl.h"

#include "asking/gateways.h"
#include "asking/limited.h"
#include "failure/causes.h"
#include "request/request.h"
#include "terminal/json.h"
#include "terminal/text.h"

#include "lvm/commands.h"
#include "lvm/rules.h"

#include "host/network.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <utility>

namespace kelpctl {
namespace {

namespace json = boost::json;
namespace rules = orb::lvm::detail;
using foundation::core::net::NetworkInterface;

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

CandidateState stateOfAsked(const Run& run)
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? CandidateState::answers : CandidateState::failed;
    case Ending::timedOut:
        return CandidateState::timedOut;
    case Ending::notStarted:
        return CandidateState::notStarted;
    case Ending::notAsked:
    case Ending::interrupted:
        break;
    }
    return CandidateState::notLookedAt;
}

// The library asks one candidate after the other until one answers.
void addCandidate(WslExamination& wsl, const Run& run)
{
    wsl.candidates.push_back({run.arguments.front(), stateOfAsked(run), run.succeeded(), run});
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
            wsl.candidates.push_back({line, CandidateState::notLookedAt, false, {}});
        }
    }
}

void examineProgram(const Context& context, Examination& found)
{
    WslExamination& wsl = found.wsl;
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
}

bool fallsBack(const WslExamination& wsl)
{
    return std::none_of(wsl.candidates.begin(), wsl.candidates.end(), [](const Candidate& each) { return each.taken; });
}

// The place where Windows keeps it may be empty, while a candidate has said what is wrong.
const Run& runToJudge(const WslExamination& wsl)
{
    const bool nothingThere = fallsBack(wsl) && wsl.listing.status == noSuchProgram;
    return nothingThere && !wsl.candidates.empty() ? wsl.candidates.front().answer : wsl.listing;
}

void judgeProgram(const Examination& found, Findings& findings)
{
    const WslExamination& wsl = found.wsl;
    const Candidate* hanging =
        findIn(wsl.candidates, [](const Candidate& each) { return each.state == CandidateState::timedOut; });
    if (wsl.listing.succeeded()) {
        if (hanging != nullptr) {
            findings.note("TOOL_HANGS", fileName(hanging->path));
        } else if (fallsBack(wsl)) {
            findings.note("WSL_VERSION_UNKNOWN");
        }
    } else if (wsl.lookUp.ending == Ending::timedOut) {
        findings.problem("TOOL_HANGS", wsl.lookUp.arguments.front());
    } else if (hanging != nullptr || wsl.listing.ending == Ending::timedOut) {
        findings.problem("TOOL_HANGS", "wsl.exe");
    } else {
        const AdviceKey cause = causeOfWslStatus(runToJudge(wsl));
        // Docker's client is looked up with the same program.
        const bool lookUpMissing = cause == "WSL_NOT_FOUND" && found.docker.lookUp.programMissing;
        findings.problem(lookUpMissing   ? AdviceKey("LOOK_UP_MISSING")
                         : cause.empty() ? AdviceKey("WSL_NOT_USABLE")
                                         : cause);
    }
}

void describeProgram(const Examination& found, CheckOutput& out)
{
    const WslExamination& wsl = found.wsl;
    out.member("wsl") = {{"executable", textOrNull(wsl.executable)},
                         {"fallback", fallsBack(wsl)},
                         {"lookUp", runObject(wsl.lookUp)},
                         {"candidates", candidateList(wsl.candidates)},
                         {"version", textOrNull(wsl.version)}};
    const std::string where = fallsBack(wsl) ? " (where Windows keeps it: no candidate was taken)" : "";
    out.judged("wsl.exe", wsl.executable.empty() ? "not known" : wsl.executable + where);
    out.candidates(wsl.lookUp, wsl.candidates);
    out.row("version", wsl.version.empty() ? "not known" : wsl.version);
}

void judgeWslName(const Examination& found, Findings& findings)
{
    if (findings.needsCreation() && !isWslName(found.image)) {
        findings.problem("WSL_NAME_INVALID");
    }
}

void examineDistributions(const Context& context, Examination& found)
{
    DistributionList list = askStates(context.programs, found.wsl.listing);
    found.wsl.table = std::move(list.table);
    found.wsl.distributions = std::move(list.all);
}

void judgeDistributions(const Examination& found, Findings& findings)
{
    if (!findings.needsCreation()) {
        return;
    }
    for (const Distribution& distribution : found.wsl.distributions) {
        if (distribution.name == found.image) {
            findings.problem("WSL_BUSY");
        } else if (lowered(distribution.name) == lowered(found.image)) {
            findings.problem("WSL_NAME_TAKEN");
        }
    }
}

std::string distributionText(const Distribution& distribution)
{
    std::string text = distribution.name + ": " + (distribution.state.empty() ? "state not known" : distribution.state);
    text += distribution.version == 0 ? "" : ", WSL " + std::to_string(distribution.version);
    return text + (distribution.isDefault ? ", the default one" : "");
}

json::object distributionObject(const Distribution& distribution)
{
    return {{"name", distribution.name},
            {"state", textOrNull(distribution.state)},
            {"version", distribution.version == 0 ? nullptr : json::value(distribution.version)},
            {"default", distribution.isDefault}};
}

void describeDistributions(const Examination& found, CheckOutput& out)
{
    const WslExamination& wsl = found.wsl;
    out.member("wsl", "listing") = runObject(wsl.listing);
    out.member("wsl", "distributions") = listOf(wsl.listing.succeeded(), wsl.distributions, distributionObject);
    if (!wsl.listing.succeeded()) {
        out.row("distributions", "not known: " + out.endingText(wsl.listing));
        out.said(wsl.listing);
        return;
    }
    const Distribution* expected = expectedDistribution(found);
    out.judged("distribution", expected == nullptr ? found.image + ": missing" : distributionText(*expected));
    if (!wsl.table.succeeded() && !wsl.distributions.empty()) {
        out.more("states are not known: " + out.endingText(wsl.table));
    }
    out.others("other distributions", wsl.distributions, expected, distributionText);
}

void examineDisk(const Context& /*context*/, Examination& found)
{
    found.wsl.disk = within(found.timeLimit, [name = found.image] { return diskOf(name); }).value_or(std::nullopt);
}

void judgeDisk(const Examination& found, Findings& findings)
{
    const std::optional<Disk>& disk = found.wsl.disk;
    if (!findings.needsCreation() && disk && disk->state != DiskState::present) {
        findings.problem(disk->state == DiskState::gone ? AdviceKey("DISK_GONE") : AdviceKey("DISK_UNREACHABLE"),
                         disk->path);
    }
}

struct DiskWords {
    const char* name;
    std::string text;
};

DiskWords wordsOf(const Disk& disk)
{
    switch (disk.state) {
    case DiskState::present:
        return {"present", disk.bytes ? sizeText(*disk.bytes) : "size not known"};
    case DiskState::gone:
        return {"gone", "gone"};
    case DiskState::unreachable:
        break;
    }
    return {"unreachable", "cannot be looked at"};
}

void describeDisk(const Examination& found, CheckOutput& out)
{
    const std::optional<Disk>& disk = found.wsl.disk;
    json::value& member = out.member("wsl", "disk");
    if (!disk) {
        member = nullptr;
        return;
    }
    const DiskWords words = wordsOf(*disk);
    member = {{"path", disk->path}, {"state", words.name}, {"size", orNull(disk->bytes)}};
    if (expectedDistribution(found) != nullptr) {
        out.row("disk", disk->path + ": " + words.text);
    }
}

void addInterface(const NetworkInterface& nic, Adapter& adapter)
{
    const std::string address = rules::getWslAdapterAddress(nic);
    if (!address.empty() && adapter.address.empty()) {
        adapter.address = address;
        adapter.name = utf8OrEmpty(nic.getFriendlyName());
    } else if (address.empty() && nic.getFriendlyName().find(u"WSL") != std::u16string::npos) {
        adapter.passedOver.push_back(utf8OrEmpty(nic.getFriendlyName()));
    }
}

void examineAdapter(const Context& /*context*/, Examination& found)
{
    found.adapter.failure = reasonOf([&found] {
        for (const NetworkInterface& nic : NetworkInterface::list()) {
            addInterface(nic, found.adapter);
        }
    });
}

void describeAdapter(const Examination& found, CheckOutput& out)
{
    const Adapter& adapter = found.adapter;
    out.member("adapter") = {{"address", textOrNull(adapter.address)},
                             {"name", textOrNull(adapter.name)},
                             {"passedOver", arrayOf(adapter.passedOver)},
                             {"failure", textOrNull(adapter.failure)}};
    if (!adapter.failure.empty()) {
        out.row("adapter address", "not known: " + adapter.failure);
    } else if (adapter.address.empty()) {
        out.row("adapter address", "none");
        out.more("  looked for: \"(WSL)\" in the name, \"Virtual\" in the description, and an IPv4 address");
    } else {
        out.row("adapter address", adapter.address + " (" + adapter.name + ")");
    }
    for (const std::string& name : adapter.passedOver) {
        out.more("  passed over: " + name);
    }
}

constexpr std::array wslRows = {
    Check{"wsl", examineProgram, judgeProgram, describeProgram},
    Check{.about = "name", .judge = judgeWslName},
    Check{"distribution", examineDistributions, judgeDistributions, describeDistributions},
    Check{"distribution", examineDisk, judgeDisk, describeDisk},
    Check{.about = "adapter", .examine = examineAdapter, .describe = describeAdapter},
};

} // namespace

std::span<const Check> wslChecks()
{
    return wslRows;
}

const Distribution* expectedDistribution(const Examination& found)
{
    return findIn(found.wsl.distributions, [&found](const Distribution& each) { return each.name == found.image; });
}

Presence presenceInWsl(const Examination& found)
{
    const Distribution* expected = expectedDistribution(found);
    if (expected == nullptr || isBusy(*expected)) {
        return found.wsl.listing.succeeded() ? Presence::missing : Presence::unknown;
    }
    return expected->state == "Stopped" && found.adapter.address.empty() ? Presence::stopped : Presence::exists;
}

} // namespace kelpctl
