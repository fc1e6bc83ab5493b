#include "failure/output.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kelpctl {
namespace {

namespace json = boost::json;

constexpr char alarming[] = "\x1b[1;31m";

// Writes a report's lines: labels at the margin, what belongs to them indented.
class ReportWriter {
public:
    ReportWriter(std::ostream& stream, bool colours) : stream_(stream), colours_(colours) {}

    void write(const std::string& label, const char* colour, const std::string& text)
    {
        const std::vector<std::string> lines = displayLines(text);
        stream_ << (colours_ ? colour : "") << label << (colours_ ? plainSequence : "");
        stream_ << (lines.empty() ? std::string() : lines.front()) << '\n';
        for (std::size_t index = 1; index < lines.size(); ++index) {
            stream_ << "    " << lines[index] << '\n';
        }
    }

    void writeDetail(const char* label, const std::string& text)
    {
        for (const std::string& line : displayLines(text)) {
            stream_ << "    " << label << line << '\n';
            label = "    ";
        }
    }

private:
    std::ostream& stream_;
    bool colours_;
};

std::string commandLine(const std::vector<std::string>& arguments)
{
    std::string line;
    for (const std::string& argument : arguments) {
        const bool quoted = argument.empty() || argument.find_first_of(" \t") != std::string::npos;
        line += line.empty() ? "" : " ";
        line += quoted ? '"' + argument + '"' : argument;
    }
    return line;
}

std::string statusText(const Run& evidence)
{
    return evidence.status ? std::to_string(*evidence.status) + " (" + hexadecimal(*evidence.status) + ")"
                           : std::string("not started");
}

// What the text above says already is not said again.
void writeStream(ReportWriter& writer, const char* label, const std::string& text, const Report& report)
{
    const std::vector<std::string> lines = displayLines(text);
    const bool said = std::all_of(lines.begin(), lines.end(), [&report](const std::string& line) {
        return report.text.find(line) != std::string::npos;
    });
    if (!said) {
        writer.writeDetail(label, text);
    }
}

void writeEvidence(ReportWriter& writer, const Report& report)
{
    const Run& evidence = *report.evidence;
    writer.write("evidence: ", boldSequence, commandLine(evidence.arguments));
    writer.writeDetail("status: ", statusText(evidence));
    writer.writeDetail("code: ", report.code);
    writeStream(writer, "standard output: ", evidence.output, report);
    writeStream(writer, "standard error: ", evidence.error, report);
}

void writeTheRest(ReportWriter& writer, const Report& report)
{
    if (report.cause) {
        writer.write("cause: ", boldSequence, report.cause->text);
    }
    if (report.evidence) {
        writeEvidence(writer, report);
    }
    writer.write("next step: ", boldSequence, report.nextStep);
}

void writeReport(Console& console, const std::string& command, const Report& report)
{
    ReportWriter writer(console.error, console.errorColours);
    writer.write(command.empty() ? "kelpctl: " : "kelpctl " + command + ": ", boldSequence, report.text);
    writer.write("error: ", alarming, report.identifier);
    writeTheRest(writer, report);
    console.error << std::flush;
}

void writeNote(Console& console, const Report& note)
{
    ReportWriter writer(console.error, console.errorColours);
    writer.write("note: ", boldSequence, note.text);
    writeTheRest(writer, note);
    console.error << std::flush;
}

json::value causeObject(const std::optional<Cause>& cause)
{
    if (!cause) {
        return nullptr;
    }
    return json::object{{"identifier", cause->identifier}, {"message", cause->text}};
}

// What is not known is null: a program that was not started, or whose streams were the user's own.
json::value evidenceObject(const Report& report)
{
    if (!report.evidence) {
        return nullptr;
    }
    const Run& evidence = *report.evidence;
    const bool captured = evidence.status && !evidence.attached;
    return json::object{{"arguments", arrayOf(evidence.arguments)},
                        {"status", orNull(evidence.status)},
                        {"hexadecimal", evidence.status ? json::value(hexadecimal(*evidence.status)) : nullptr},
                        {"output", captured ? json::value(evidence.output) : nullptr},
                        {"error", captured ? json::value(evidence.error) : nullptr},
                        {"code", textOrNull(report.code)}};
}

json::value errorObject(const std::optional<Report>& failure)
{
    if (!failure) {
        return nullptr;
    }
    return json::object{{"identifier", failure->identifier},        {"message", failure->text},
                        {"arguments", arrayOf(failure->arguments)}, {"cause", causeObject(failure->cause)},
                        {"evidence", evidenceObject(*failure)},     {"next", failure->nextStep}};
}

} // namespace

json::array noteList(const std::vector<Report>& notes)
{
    json::array list;
    for (const Report& note : notes) {
        list.push_back(errorObject(note));
    }
    return list;
}

void writeText(Console& console, const std::string& command, const Outcome& outcome)
{
    for (const std::string& line : outcome.lines) {
        console.out << line << '\n';
    }
    console.out << std::flush;
    for (const Report& note : outcome.notes) {
        writeNote(console, note);
    }
    if (outcome.failure) {
        writeReport(console, command, *outcome.failure);
    }
}

void writeJson(Console& console, const std::string& command, const Outcome& outcome)
{
    const json::object object = {{"command", command},
                                 {"ok", !outcome.failure.has_value()},
                                 {"result", outcome.result},
                                 {"error", errorObject(outcome.failure)}};
    console.out << jsonLine(object) << '\n' << std::flush;
}

} // namespace kelpctl
