#include "output.h"

#include "text.h"

namespace kelpctl {
namespace {

using nlohmann::ordered_json;

void writeIndented(std::ostream& stream, const char* label, const std::string& text)
{
    const char* start = label;
    for (const std::string& line : displayLines(text)) {
        stream << start << line << '\n';
        start = "    ";
    }
}

void writeReport(std::ostream& stream, const std::string& command, const Report& report)
{
    const std::string who = command.empty() ? "kelpctl: " : "kelpctl " + command + ": ";
    writeIndented(stream, who.c_str(), report.text);
    writeIndented(stream, "error: ", report.identifier);
    for (const std::string& evidence : report.evidence) {
        writeIndented(stream, "evidence: ", evidence);
    }
    writeIndented(stream, "next step: ", report.nextStep);
    stream << std::flush;
}

ordered_json errorObject(const std::optional<Report>& failure)
{
    if (!failure) {
        return nullptr;
    }
    return {{"identifier", failure->identifier},
            {"message", failure->text},
            {"arguments", failure->arguments},
            {"next", failure->nextStep}};
}

} // namespace

void writeText(Console& console, const std::string& command, const Outcome& outcome)
{
    for (const std::string& line : outcome.lines) {
        console.out << line << '\n';
    }
    console.out << std::flush;
    if (outcome.failure) {
        writeReport(console.error, command, *outcome.failure);
    }
}

void writeJson(Console& console, const std::string& command, const Outcome& outcome)
{
    const ordered_json object = {{"command", command},
                                 {"ok", !outcome.failure.has_value()},
                                 {"result", outcome.result},
                                 {"error", errorObject(outcome.failure)}};
    console.out << object.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << '\n' << std::flush;
}

StreamDetour::~StreamDetour()
{
    from_.rdbuf(buffer_);
    to_ << text_.str() << std::flush;
}

} // namespace kelpctl
