#include "doctor/check.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include "host/text.h"

#include <algorithm>
#include <array>
#include <exception>

namespace kelpctl {
namespace {

namespace json = boost::json;
using foundation::core::text::readable;

struct Labels {
    // For programs, and for people.
    const char* name;
    const char* text;
};

// In the order of CandidateState.
constexpr std::array candidateLabels = {
    Labels{"answers", "it answers \"-v\""},
    Labels{"failed", "\"-v\" failed with "},
    Labels{"notStarted", "it could not be started"},
    Labels{"timedOut", "it did not answer \"-v\" within "},
    Labels{"regularFile", "it is the first that is a file"},
    Labels{"hostsOwn", "it lies in bin\\win64, among the host's own programs"},
    Labels{"missing", "it does not exist"},
    Labels{"link", "it is a link"},
    Labels{"notAFile", "it is no file"},
    Labels{"notReadable", "it cannot be looked at, which ends the search"},
    Labels{"notLookedAt", "not looked at: the search had ended"},
};

static_assert(candidateLabels.size() == static_cast<std::size_t>(CandidateState::notLookedAt) + 1);

const Labels& labelsOf(CandidateState state)
{
    return candidateLabels.at(static_cast<std::size_t>(state));
}

const char* endingName(const Run& run)
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? "answered" : "failed";
    case Ending::notStarted:
        return "notStarted";
    case Ending::timedOut:
        return "timedOut";
    case Ending::notAsked:
    case Ending::interrupted:
        break;
    }
    return "notAsked";
}

std::string secondsText(std::chrono::seconds limit)
{
    return std::to_string(limit.count()) + " s";
}

std::string statusAndBits(const std::optional<std::int32_t>& status)
{
    return status ? "status " + std::to_string(*status) + " (" + hexadecimal(*status) + ")" : std::string("no status");
}

} // namespace

void Findings::add(Severity severity, AdviceKey key, const std::string& subject)
{
    all.push_back({severity, key, subject, about});
}

void Findings::add(const std::vector<Finding>& others)
{
    for (const Finding& finding : others) {
        add(finding.severity == Severity::problem ? needed() : Severity::note, finding.key, finding.subject);
    }
}

void CheckOutput::judged(const std::string& label, const std::string& value, bool known)
{
    table_.row(std::max(worst_, counts_ && known ? Mark::ok : Mark::none), label, value);
}

void CheckOutput::said(const std::string& text)
{
    constexpr std::size_t shown = 4;
    std::vector<std::string> lines = displayLines(text);
    std::erase(lines, std::string());
    for (std::size_t index = 0; index < std::min(lines.size(), shown); ++index) {
        more("    " + lines[index]);
    }
    if (lines.size() > shown) {
        more("    ...");
    }
}

void CheckOutput::list(const std::string& label, const std::vector<std::string>& texts)
{
    constexpr std::size_t shown = 10;
    row(label, texts.empty() ? "none" : texts.front());
    for (std::size_t index = 1; index < std::min(texts.size(), shown); ++index) {
        more(texts[index]);
    }
    if (texts.size() > shown) {
        more("and " + std::to_string(texts.size() - shown) + " more; --json shows all");
    }
}

void CheckOutput::candidates(const Run& lookUp, const std::vector<Candidate>& candidates)
{
    std::string label = "candidates";
    for (const Candidate& candidate : candidates) {
        row(label, candidate.path);
        more("  " + candidateText(candidate, timeLimit_));
        if (candidate.state == CandidateState::failed) {
            said(candidate.answer);
        }
        label.clear();
    }
    if (candidates.empty() && !lookUp.asked()) {
        row(label, "none: not looked for");
    } else if (candidates.empty()) {
        row(label, "none: \"" + shortCommand(lookUp.arguments) + "\"" +
                       (lookUp.succeeded() ? " printed nothing" : ": " + endingText(lookUp)));
    }
}

std::string CheckOutput::endingText(const Run& run) const
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? "it answers" : "it failed with " + statusAndBits(run.status);
    case Ending::notStarted:
        return "it could not be started";
    case Ending::timedOut:
        return "it did not answer within " + secondsText(timeLimit_);
    case Ending::notAsked:
    case Ending::interrupted:
        break;
    }
    return "not asked";
}

std::string reasonOf(const std::function<void()>& step)
{
    try {
        step();
    } catch (const std::exception& error) {
        return readable(error.what());
    }
    return {};
}

std::string utf8OrEmpty(const std::u16string& text)
{
    std::string result;
    reasonOf([&] { result = foundation::core::text::cvt_ustring_utf8(text); });
    return result;
}

std::string candidateText(const Candidate& candidate, std::chrono::seconds timeLimit)
{
    std::string text = labelsOf(candidate.state).text;
    std::string passedOver =
        (candidate.taken ? "taken all the same, since no other is better: " : "passed over: ") + text;
    switch (candidate.state) {
    case CandidateState::answers:
    case CandidateState::regularFile:
        return "taken: " + text;
    case CandidateState::failed:
        return passedOver + statusAndBits(candidate.answer.status);
    case CandidateState::timedOut:
        return passedOver + secondsText(timeLimit);
    case CandidateState::notReadable:
    case CandidateState::notLookedAt:
        return text;
    default:
        return passedOver;
    }
}

json::object runObject(const Run& run)
{
    // A program may print any amount.
    constexpr std::size_t enough = 4096;
    json::array arguments;
    for (const std::string& argument : run.arguments) {
        arguments.emplace_back(readable(argument));
    }
    return {{"ending", endingName(run)},
            {"arguments", arguments},
            {"status", orNull(run.status)},
            {"output", run.output.substr(0, enough)},
            {"error", run.error.substr(0, enough)}};
}

json::array candidateList(const std::vector<Candidate>& candidates)
{
    json::array list;
    for (const Candidate& candidate : candidates) {
        list.push_back(json::object{{"path", candidate.path},
                                    {"taken", candidate.taken},
                                    {"reason", labelsOf(candidate.state).name},
                                    {"status", orNull(candidate.answer.status)}});
    }
    return list;
}

} // namespace kelpctl
