#include "failure/report.h"

#include "failure/causes.h"
#include "terminal/interruption.h"
#include "terminal/text.h"

#include "lvm/commands.h"

#include "host/exceptions.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>

namespace kelpctl {
namespace {

using foundation::core::except::IMsgIDException;
using foundation::core::text::readable;

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

void addEvidence(Report& report, const Run& run, const Request& request)
{
    const std::vector<std::string> secrets = secretsOf(request);
    report.code = codeOf(run);
    Run& evidence = report.evidence.emplace(run);
    for (std::string& argument : evidence.arguments) {
        argument = shownArgument(readable(argument), request);
    }
    evidence.output = redacted(readable(run.captured), secrets);
    evidence.error = redacted(readable(run.capturedError), secrets);
}

// Fills in what follows from the identifier and the cause.
void advise(Report& report, AdviceKey cause, const Names& names)
{
    const Advice& own = adviceFor(adviceKey(report.identifier));
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

// The run that an error of the library is explained by. What succeeded is no evidence, except for the list that an image is
// missing in.
std::optional<Run> evidenceOf(std::string_view identifier, const std::vector<Run>& runs)
{
    if (identifier == orb::container_support::IMAGE_NOT_EXIST::identifier) {
        return runs.empty() ? std::nullopt : std::optional(runs.back());
    }
    const std::optional<Run> run = decisiveRun(runs);
    return run && run->succeeded() ? std::nullopt : run;
}

Report catalogueReport(const IMsgIDException& error, const Context& context)
{
    Report report;
    report.identifier = error.message().identifier;
    report.text = error.userText();
    for (const foundation::core::message::Argument& argument : error.message().arguments) {
        report.arguments.push_back(readable(argument.text()));
    }
    const std::optional<Run> run = evidenceOf(report.identifier, context.journal.runs());
    if (run) {
        addEvidence(report, *run, context.request);
    }
    Names names = namesOf(context.request);
    names.subject = run ? run->arguments.front() : std::string();
    advise(report, causeOf(adviceKey(report.identifier), run, context), names);
    return report;
}

Report plainReport(AdviceKey identifier, const std::string& subject, const Request& request)
{
    return makeReport(Failure(identifier, readable(subject)), {}, std::nullopt, request);
}

// The process service names the program in the text, the text service its own failures by one code.
AdviceKey identifierOf(const std::system_error& error)
{
    return error.code() == std::errc::illegal_byte_sequence ? AdviceKey("TEXT_NOT_VALID")
                                                            : AdviceKey("PROGRAM_NOT_STARTED");
}

Report usageReport(const UsageError& error)
{
    Report report;
    report.identifier = "USAGE";
    Names names;
    names.image = error.command();
    names.subject = readable(error.what());
    const Advice& advice = adviceFor(error.command().empty() ? AdviceKey("USAGE") : AdviceKey("USAGE_OF_COMMAND"));
    report.text = adviceText(advice, names);
    report.nextStep = adviceNextStep(advice, names);
    report.status = statusUsage;
    return report;
}

// Only what talks to a child program has evidence in the journal.
bool isAboutARun(AdviceKey identifier)
{
    constexpr std::array<AdviceKey, 4> identifiers = {"WSL_NOT_USABLE", "REMOVAL_FAILED", "CONTAINER_NOT_STARTED",
                                                      "CONTAINER_NOT_STOPPED"};
    return std::find(identifiers.begin(), identifiers.end(), identifier) != identifiers.end();
}

// Of work that was ended on the way: the program that ran then goes on, or leaves something behind.
Report endedReport(AdviceKey identifier, const Context& context)
{
    const std::vector<Run> runs = context.journal.runs();
    const std::optional<Run> run = runs.empty() ? std::nullopt : std::optional(runs.back());
    Report report =
        makeReport(Failure(identifier, run ? orb::lvm::detail::importFolderOf(run->arguments) : std::string()),
                   causeOfInterruption(run), run, context.request);
    report.status = identifier == "INTERRUPTED" ? statusInterrupted : statusFailed;
    return report;
}

Report failureReport(const Failure& failure, const Context& context)
{
    if (failure.identifier() == "INTERRUPTED" || failure.identifier() == "WORK_STALLED") {
        return endedReport(failure.identifier(), context);
    }
    if (!failure.cause().empty()) {
        return makeReport(failure, failure.cause(), std::nullopt, context.request);
    }
    const std::optional<Run> run =
        isAboutARun(failure.identifier()) ? decisiveRun(context.journal.runs()) : std::optional<Run>();
    const AdviceKey cause = causeOf(failure.identifier(), run, context);
    const std::string subject = run && run->ending == Ending::timedOut ? run->arguments.front() : failure.subject();
    return makeReport(Failure(failure.identifier(), subject), cause, run, context.request);
}

} // namespace

Report makeReport(const Failure& failure, AdviceKey cause, const std::optional<Run>& run, const Request& request)
{
    Report report;
    report.identifier = failure.identifier().text();
    if (!failure.subject().empty()) {
        report.arguments.push_back(failure.subject());
    }
    if (run) {
        addEvidence(report, *run, request);
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
        return usageReport(usage);
    } catch (const Failure& failure) {
        return failureReport(failure, context);
    } catch (const IMsgIDException& message) {
        return catalogueReport(message, context);
    } catch (const std::filesystem::filesystem_error& file) {
        // Only the temporary directory is looked for without a path.
        return plainReport(file.path1().empty() ? AdviceKey("TEMPORARY_FOLDER_NOT_USABLE")
                                                : AdviceKey("FILE_NOT_ACCESSIBLE"),
                           file.what(), context.request);
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
