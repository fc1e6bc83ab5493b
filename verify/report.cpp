#include "report.h"

#include "terminal/zip.h"

#include "host/text.h"

#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <map>
#include <sstream>
#include <system_error>

namespace verify {

namespace json = boost::json;

namespace {

constexpr Verdict verdicts[] = {Verdict::asClaimed, Verdict::differs, Verdict::knownDifference, Verdict::notApplicable,
                                Verdict::notChecked};

std::int64_t countOf(const Run& run, Verdict verdict)
{
    return std::count_if(run.results.begin(), run.results.end(),
                         [verdict](const Result& each) { return each.verdict == verdict; });
}

// "P-01 P-02" by the reason they have in common.
std::map<std::string, std::string> byReason(const Run& run, Verdict verdict)
{
    std::map<std::string, std::string> reasons;
    for (const Result& each : run.results) {
        if (each.verdict == verdict) {
            reasons[each.why] += " " + each.fact->id;
        }
    }
    return reasons;
}

void writeHead(std::ostream& text, const Run& run)
{
    text << (differs(run)                            ? "SOMETHING DIFFERS: "
             : countOf(run, Verdict::asClaimed) == 0 ? "NOTHING CHECKED: "
                                                     : "AS CLAIMED: ");
    const char* separator = "";
    for (const Verdict verdict : verdicts) {
        if (const std::int64_t count = countOf(run, verdict); count > 0) {
            text << separator << count << " " << wordOf(verdict);
            separator = ", ";
        }
    }
    text << "\n";
}

void writeDifferences(std::ostream& text, const Run& run)
{
    for (const Result& each : run.results) {
        if (each.verdict == Verdict::differs) {
            text << "\n"
                 << each.fact->id << "  " << each.fact->claim << "\n      expected      " << each.expected
                 << "\n      got           " << each.got << "\n      what follows  " << each.fact->follows << "\n";
        }
    }
}

void writeReasons(std::ostream& text, const Run& run)
{
    for (const Verdict verdict : {Verdict::knownDifference, Verdict::notApplicable, Verdict::notChecked}) {
        for (const auto& [why, ids] : byReason(run, verdict)) {
            text << "\n" << wordOf(verdict) << ", " << why << ":\n     " << ids << "\n";
        }
    }
}

void writeMachine(std::ostream& text, const Run& run)
{
    text << "\n" << run.begun << ", facts " << run.facts;
    for (const std::string& option : run.options) {
        text << " " << option;
    }
    text << "\n" << json::serialize(run.system) << "\n";
    for (const char* program : {"wsl", "docker"}) {
        const std::string told = textAt(run.programs, program);
        text << program << ":" << (told.empty() ? " none\n" : "\n" + told);
    }
    for (const std::string& each : run.removed) {
        text << "removed what an earlier run had left: " << each << "\n";
    }
}

// Text where it is one, so that a person can read it; and only the beginning of what is long, for that has a file.
json::object described(const std::string& bytes, Encoding encoding, const Names& names)
{
    constexpr std::size_t longest = 4000;
    json::object object = {{"bytes", bytes.size()}};
    std::string text;
    try {
        text = textOf(bytes, encoding).value_or("");
        foundation::core::text::cvt_utf8_ustring(text);
    } catch (const std::system_error&) {
        text.clear();
    }
    if (text.empty() && !bytes.empty()) {
        text = foundation::core::text::readable(bytes);
        object["readable"] = names.hidden(foundation::core::text::readable(text.substr(0, longest)));
    } else {
        object["text"] = names.hidden(foundation::core::text::readable(text.substr(0, longest)));
        object["lineEnds"] = text.find("\r\n") != std::string::npos ? "CR LF" : "LF";
    }
    return object;
}

json::object describe(const Step& step, const Names& names)
{
    return {{"what", step.what},
            {"status", step.answer.status},
            {"terminated", step.answer.terminated},
            {"encoding", namesOf(step.encoding).inReport},
            {"output", described(step.answer.output, step.encoding, names)},
            {"errors", described(step.answer.errors, Encoding::bytes, names)}};
}

json::object describe(const Result& result, const Names& names)
{
    json::array steps;
    for (const Step& step : result.steps) {
        steps.push_back(describe(step, names));
    }
    return {{"id", result.fact->id},           {"claim", result.fact->claim}, {"verdict", wordOf(result.verdict)},
            {"why", names.hidden(result.why)}, {"expected", result.expected}, {"got", names.hidden(result.got)},
            {"follows", result.fact->follows}, {"steps", std::move(steps)}};
}

json::array arrayOf(const std::vector<std::string>& texts)
{
    json::array array(texts.begin(), texts.end());
    return array;
}

} // namespace

bool differs(const Run& run)
{
    return countOf(run, Verdict::differs) > 0;
}

std::string reportText(const Run& run, const Names& names)
{
    std::ostringstream text;
    writeHead(text, run);
    writeDifferences(text, run);
    writeReasons(text, run);
    writeMachine(text, run);
    return names.hidden(text.str());
}

std::string reportJson(const Run& run, const Names& names)
{
    json::object counts;
    for (const Verdict verdict : verdicts) {
        counts[wordOf(verdict)] = countOf(run, verdict);
    }
    json::array facts;
    for (const Result& result : run.results) {
        facts.push_back(describe(result, names));
    }
    const json::object whole = {{"format", 1},
                                {"begun", run.begun},
                                {"table", run.facts},
                                {"options", arrayOf(run.options)},
                                {"system", run.system},
                                {"programs", run.programs},
                                {"counts", std::move(counts)},
                                {"facts", std::move(facts)}};
    return names.hidden(json::serialize(whole)) + "\n";
}

std::string reportArchive(const Run& run, const Names& names)
{
    constexpr std::size_t longest = 65536;
    std::vector<kelpctl::ZipEntry> entries{{"report.txt", reportText(run, names)},
                                           {"report.json", reportJson(run, names)}};
    for (const Result& result : run.results) {
        int number = 0;
        for (const Step& step : result.steps) {
            const std::string name = "raw/" + result.fact->id + "-" + std::to_string(++number);
            entries.push_back({name + ".stdout", names.hiddenInBytes(step.answer.output.substr(0, longest))});
            entries.push_back({name + ".stderr", names.hiddenInBytes(step.answer.errors.substr(0, longest))});
        }
    }
    return kelpctl::zipOf(entries);
}

} // namespace verify
