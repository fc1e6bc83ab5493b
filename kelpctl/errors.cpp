#include "errors.h"

#include "causes.h"
#include "command_line.h"
#include "interruption.h"
#include "text.h"

#include "host/exceptions.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <new>
#include <system_error>

namespace kelpctl {
namespace {

using foundation::core::except::IMsgIDException;
using foundation::core::text::readable;
using orb::lvm::hubName;

std::string quotedIfBlank(const std::string& text)
{
    return text.find(' ') == std::string::npos ? text : '"' + text + '"';
}

// The command's name and the flags that decide what it works on.
std::string invocationOf(const Request& request)
{
    std::string text = "kelpctl";
    if (request.backend) {
        text += *request.backend == Backend::wsl ? " --wsl" : " --docker";
    }
    if (request.root) {
        text += " --root " + quotedIfBlank(*request.root);
    }
    if (request.release) {
        text += " --release " + quotedIfBlank(*request.release);
    }
    if (request.language) {
        text += " --language " + *request.language;
    }
    return text;
}

// The name may be asked for before anything else has worked.
std::string defaultImage()
{
    try {
        return orb::lvm::addKVRelease(hubName);
    } catch (const std::exception&) {
        return hubName;
    }
}

std::string shown(const std::string& captured, const std::vector<std::string>& secrets)
{
    return redacted(readable(captured), secrets);
}

// The values given with "-e" stand in arguments by themselves or behind their names. Nothing else is touched, so that the
// command line stays what it was.
std::string shownArgument(const std::string& argument, const Request& request)
{
    for (const auto& [name, value] : request.environment) {
        const std::string start = name.substr(0, name.find('/')) + "=";
        if (!value.empty() && argument == value) {
            return redacted(argument, {value});
        }
        if (!value.empty() && argument == start + value) {
            return start + redacted(value, {value});
        }
    }
    return argument;
}

Evidence evidenceOf(const Run& run, const Request& request)
{
    const std::vector<std::string> secrets = secretsOf(request);
    Evidence evidence;
    for (const std::string& argument : run.arguments) {
        evidence.arguments.push_back(shownArgument(readable(argument), request));
    }
    if (run.result) {
        evidence.status = run.result->status;
        evidence.output = shown(run.result->standardOutput, secrets);
        evidence.error = shown(run.result->standardError, secrets);
        evidence.code = wslCodePath(readableOutput(*run.result));
    }
    return evidence;
}

// Fills in what follows from the identifier and the cause.
void advise(Report& report, std::string_view cause, const Names& names)
{
    const Advice& own = adviceFor(report.identifier);
    if (report.text.empty()) {
        report.text = adviceText(own, names);
    }
    if (cause.empty()) {
        report.nextStep = adviceNextStep(own, names);
        return;
    }
    const Advice& behind = adviceFor(cause);
    report.cause = Cause{behind.key, adviceText(behind, names)};
    report.nextStep = adviceNextStep(behind, names);
}

Report reportOf(const IMsgIDException& error, const Context& context)
{
    Report report;
    report.identifier = error.message().identifier;
    report.text = error.userText();
    for (const foundation::core::message::Argument& argument : error.message().arguments) {
        report.arguments.push_back(readable(argument.text()));
    }
    std::optional<Run> run = tellingRun(context.journal.runs());
    if (run && !run->failed() && report.identifier != "IMAGE_NOT_EXIST") {
        // What succeeded is no evidence, except for the list that an image is missing in.
        run.reset();
    }
    if (run) {
        report.evidence = evidenceOf(*run, context.request);
    }
    Names names = namesOf(context.request);
    names.subject = run ? run->arguments.front() : std::string();
    advise(report, causeOf(report.identifier, run, context), names);
    return report;
}

Report plainReport(const std::string& identifier, const std::string& subject, const Request& request)
{
    return reportOf(Failure(identifier, readable(subject)), {}, std::nullopt, request);
}

// The process service names the program in the text, the text service its own failures by one code.
const char* identifierOf(const std::system_error& error)
{
    return error.code() == std::errc::illegal_byte_sequence ? "TEXT_NOT_VALID" : "PROGRAM_NOT_STARTED";
}

Report reportOf(const UsageError& error)
{
    Report report;
    report.identifier = "USAGE";
    Names names;
    names.image = error.command();
    names.subject = readable(error.what());
    const Advice& advice = adviceFor(error.command().empty() ? "USAGE" : "USAGE_OF_COMMAND");
    report.text = adviceText(advice, names);
    report.nextStep = adviceNextStep(advice, names);
    report.status = statusUsage;
    return report;
}

// Only what talks to a child program has evidence in the journal.
bool isAboutARun(const std::string& identifier)
{
    constexpr std::array<std::string_view, 4> identifiers = {"WSL_NOT_USABLE", "REMOVAL_FAILED",
                                                             "CONTAINER_NOT_STARTED", "CONTAINER_NOT_STOPPED"};
    return std::find(identifiers.begin(), identifiers.end(), identifier) != identifiers.end();
}

Report interruptionReport(const Context& context)
{
    const std::vector<Run> runs = context.journal.runs();
    const std::optional<Run> run = runs.empty() ? std::nullopt : std::optional(runs.back());
    Report report = reportOf(Failure("INTERRUPTED", importFolder(run)), causeOfInterruption(run), run, context.request);
    report.status = statusInterrupted;
    return report;
}

Report reportOf(const Failure& failure, const Context& context)
{
    if (failure.identifier() == "INTERRUPTED") {
        return interruptionReport(context);
    }
    if (!failure.cause().empty()) {
        return reportOf(failure, failure.cause(), std::nullopt, context.request);
    }
    const std::optional<Run> run =
        isAboutARun(failure.identifier()) ? tellingRun(context.journal.runs()) : std::optional<Run>();
    const std::string cause = causeOf(failure.identifier(), run, context);
    const std::string subject = run && run->timedOut ? run->arguments.front() : failure.subject();
    return reportOf(Failure(failure.identifier(), subject), cause, run, context.request);
}

} // namespace

Names namesOf(const Request& request)
{
    Names names;
    names.invocation = invocationOf(request);
    names.image = !request.name.empty() ? request.name : !request.image.empty() ? request.image : defaultImage();
    names.container = request.container.empty() ? hubName : request.container;
    return names;
}

std::string hexadecimal(std::int32_t status)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += digits[(static_cast<std::uint32_t>(status) >> shift) & 15U];
    }
    return text;
}

Report reportOf(const Failure& failure, std::string_view cause, const std::optional<Run>& run, const Request& request)
{
    Report report;
    report.identifier = failure.identifier();
    if (!failure.subject().empty()) {
        report.arguments.push_back(failure.subject());
    }
    if (run) {
        report.evidence = evidenceOf(*run, request);
    }
    Names names = namesOf(request);
    names.subject = failure.subject();
    advise(report, cause, names);
    return report;
}

Report reportOf(const std::exception_ptr& error, const Context& context)
{
    try {
        std::rethrow_exception(error);
    } catch (const UsageError& usage) {
        return reportOf(usage);
    } catch (const Failure& failure) {
        return reportOf(failure, context);
    } catch (const IMsgIDException& message) {
        return reportOf(message, context);
    } catch (const std::filesystem::filesystem_error& file) {
        // Only the temporary directory is looked for without a path.
        return plainReport(file.path1().empty() ? "TEMPORARY_FOLDER_NOT_USABLE" : "FILE_NOT_ACCESSIBLE", file.what(),
                           context.request);
    } catch (const std::system_error& system) {
        return plainReport(identifierOf(system), system.what(), context.request);
    } catch (const std::invalid_argument& argument) {
        return plainReport("INVALID_ARGUMENT", argument.what(), context.request);
    } catch (const std::bad_alloc&) {
        return plainReport("OUT_OF_MEMORY", {}, context.request);
    } catch (const std::exception& other) {
        return plainReport("UNEXPECTED_ERROR", other.what(), context.request);
    } catch (...) {
        return plainReport("UNEXPECTED_ERROR", "An unknown error occurred.", context.request);
    }
}

} // namespace kelpctl
