#include "doctor/doctor.h"

#include "doctor/account.h"
#include "doctor/archives.h"
#include "doctor/docker.h"
#include "doctor/environment.h"
#include "doctor/wsl.h"
#include "doctor/wsl_settings.h"
#include "request/backend.h"
#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

// A part of the table.
struct Section {
    const char* title;
    std::span<const Check> (*checks)();
    // The one that it is about; nothing for both.
    std::optional<Backend> backend = {};

    bool counts(Backend chosen) const { return !backend || *backend == chosen; }
};

// In the order in which all is examined, judged and shown.
constexpr std::array sections = {
    Section{"environment", environmentChecks},
    Section{"account", accountChecks},
    Section{"WSL", wslChecks, Backend::wsl},
    Section{"settings of WSL", wslSettingChecks, Backend::wsl},
    Section{"Docker", dockerChecks, Backend::docker},
    Section{"archives", archiveChecks},
    Section{"temporary folder", temporaryFolderChecks},
};

Presence presenceOf(const Examination& found)
{
    switch (found.backend) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return presenceInDocker(found);
    }
    return presenceInWsl(found);
}

// What is missing is the last of the notes.
void noteMissing(const Examination& found, Findings& findings)
{
    switch (found.backend) {
    case Backend::wsl:
        findings.about = "distribution";
        findings.note("DISTRIBUTION_MISSING");
        return;
    case Backend::docker:
        findings.about = "image";
        findings.note("IMAGE_MISSING");
        return;
    }
}

Mark worstMark(const Judgement& judgement, std::string_view about)
{
    Mark worst = Mark::none;
    for (const Finding& finding : judgement.findings) {
        worst = finding.about == about ? std::max(worst, markOf(finding.severity)) : worst;
    }
    return worst;
}

void printVerdict(const Examination& found, const Judgement& judgement, const Names& names, TableLines& table)
{
    const std::string setup = "\"" + names.setup + "\"";
    const std::size_t problems = judgement.problems();
    table.section("verdict");
    switch (judgement.verdict) {
    case Verdict::blocked:
        table.text(Mark::problem, (problems == 1 ? "One thing" : plural(problems, "thing")) + " would keep " + setup +
                                      " from working.");
        break;
    case Verdict::exists:
        table.text(Mark::ok, setup + " would do nothing: " + found.image + " exists.");
        break;
    case Verdict::wouldStart:
        table.text(Mark::ok, setup + " would start " + found.image + ", which exists.");
        break;
    case Verdict::ready:
        table.text(Mark::ok, "Nothing would keep " + setup + " from working.");
        break;
    }
}

// Programs get the adapter behind the backends, people beside the one that it belongs to.
json::object objectFor(Verdict verdict)
{
    constexpr std::array names = {"blocked", "exists", "wouldStart", "ready"};
    json::object object = {{"verdict", names.at(static_cast<std::size_t>(verdict))}};
    for (const char* member :
         {"backend", "release", "installationRoot", "image", "container", "account", "wsl", "docker", "adapter"}) {
        object[member] = nullptr;
    }
    return object;
}

} // namespace

Examination examine(const Context& context)
{
    context.journal.limitEachRun(context.request.timeLimit);
    Examination found;
    found.timeLimit = context.request.timeLimit;
    for (const Section& section : sections) {
        for (const Check& check : section.checks()) {
            check.examine(context, found);
        }
    }
    return found;
}

std::size_t Judgement::problems() const
{
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::problem;
    }));
}

Judgement judge(const Examination& found)
{
    Findings findings{presenceOf(found)};
    for (const Section& section : sections) {
        for (const Check& check : section.counts(found.backend) ? section.checks() : std::span<const Check>()) {
            findings.about = check.about;
            check.judge(found, findings);
        }
    }
    if (findings.presence == Presence::missing) {
        noteMissing(found, findings);
    }
    std::stable_partition(findings.all.begin(), findings.all.end(),
                          [](const Finding& finding) { return finding.severity == Severity::problem; });
    if (findings.all.empty()) {
        findings.all.push_back({Severity::note, "ENVIRONMENT_READY", {}});
    }
    // In the order of Presence.
    constexpr std::array verdicts = {Verdict::ready, Verdict::ready, Verdict::wouldStart, Verdict::exists};
    Judgement judgement{verdicts.at(static_cast<std::size_t>(findings.presence)), findings.all};
    if (judgement.problems() > 0) {
        judgement.verdict = Verdict::blocked;
    }
    return judgement;
}

Description describe(const Examination& found, const Judgement& judgement, const Names& names, bool colours)
{
    TableLines table(colours);
    json::object object = objectFor(judgement.verdict);
    for (const Section& section : sections) {
        const bool counts = section.counts(found.backend);
        table.section(section.title + std::string(counts ? "" : " (not the backend)"));
        for (const Check& check : section.checks()) {
            CheckOutput out(table, object, worstMark(judgement, check.about), counts, found.timeLimit);
            check.describe(found, out);
        }
    }
    printVerdict(found, judgement, names, table);
    printNextSteps(judgement.findings, names, table);
    object["timeLimit"] = found.timeLimit.count();
    object["findings"] =
        listOf(true, judgement.findings, [&names](const Finding& each) { return findingObject(each, names); });
    return {table.take(), std::move(object)};
}

} // namespace kelpctl
