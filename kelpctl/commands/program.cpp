#include "commands/program.h"

#include "commands/command_line.h"
#include "commands/commands.h"
#include "commands/log.h"
#include "failure/advice.h"
#include "failure/kept_failure.h"
#include "failure/output.h"
#include "request/backend.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "lvm/files.h"

#include "host/configuration.h"
#include "host/environment.h"
#include "host/text.h"

#include <filesystem>
#include <iostream>

namespace kelpctl {
namespace {

// In the system's own form. WSL takes a relative path from a folder of its own choice.
std::string absoluteLocation(const std::string& folder)
{
    const std::filesystem::path path = std::filesystem::absolute(orb::lvm::detail::toPath(folder));
    return foundation::core::text::cvt_ustring_utf8(std::filesystem::path(path).make_preferred().u16string());
}

void configureHost(const Request& request)
{
    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    if (request.root) {
        configuration.setInstallationRoot(request.root);
    }
    if (request.release) {
        configuration.setRelease(request.release);
    }
    if (request.location) {
        configuration.setTemporaryFolder(absoluteLocation(*request.location));
    }
    configuration.setChannelMask("orb", channelMask(request.log));
    foundation::core::config::configure(configuration);
}

// The language comes first of all: a command line that means nothing is answered in it, too.
void configureLanguage(const std::vector<std::string>& arguments)
{
    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    const std::optional<std::string> asked = requestedLanguage(arguments);
    configuration.setLanguage(asked ? *asked : systemLanguage());
    foundation::core::config::configure(configuration);
}

// A language of the system's without a translation is no reason for a word; one that was asked for is.
void warnOfLanguage(const Context& context)
{
    const std::string language = context.request.language.value_or("");
    if (!hasCatalogue(language)) {
        context.console.error << "kelpctl: resources/kelpctl." << escaped(language)
                              << ".json is missing or broken; kelpctl's own messages are in English.\n";
    }
}

int finish(bool json, const Context& context, const std::string& command, const Outcome& outcome)
{
    Console& console = context.console;
    if (outcome.failure) {
        keepFailure(context.request, *outcome.failure);
    }
    if (json) {
        writeJson(console, command, outcome);
    } else {
        writeText(console, command, outcome);
    }
    if (!console.out && !outcome.status) {
        writeText(console, command, {{}, nullptr, makeReport(Failure("OUTPUT_NOT_WRITABLE"), {}, std::nullopt, {})});
        return statusFailed;
    }
    return outcome.failure ? outcome.failure->status : outcome.status.value_or(statusDone);
}

int runRequest(const Context& context)
{
    const Request& request = context.request;
    selectBackend(request.backend);
    // The sink comes before the levels: a record must not go where no sink is.
    const Log log(request, context.console.error);
    configureHost(request);
    warnOfLanguage(context);
    const Outcome outcome = findCommand(request.command)->run(context);
    return finish(request.json, context, request.command, outcome);
}

int fail(bool json, const Context& context, const std::string& command, const std::exception_ptr& error)
{
    return finish(json, context, command, {{}, nullptr, reportOf(error, context)});
}

// Whether text that goes there may be coloured: never when the user has said no.
bool mayColour(StandardStream stream)
{
    return foundation::core::env::variable("NO_COLOR").value_or("").empty() &&
           foundation::core::env::variable("TERM").value_or("") != "dumb" && showsColours(stream);
}

Console processConsole()
{
    const bool errorIsTerminal = isTerminal(StandardStream::error);
    const bool interactive = errorIsTerminal && isTerminal(StandardStream::input) && isTerminal(StandardStream::output);
    return {std::cout,
            std::cerr,
            errorIsTerminal,
            interactive,
            mayColour(StandardStream::output),
            mayColour(StandardStream::error)};
}

} // namespace

int run(const std::vector<std::string>& arguments, Console& console, const Programs& programs)
{
    RunJournal journal;
    Request request;
    const Context context{request, console, programs, journal};
    try {
        configureLanguage(arguments);
        request = parseCommandLine(arguments);
    } catch (const UsageError& error) {
        return fail(requestsJson(arguments), context, error.command(), std::current_exception());
    } catch (...) {
        return fail(requestsJson(arguments), context, {}, std::current_exception());
    }
    try {
        return runRequest(context);
    } catch (...) {
        return fail(request.json, context, request.command, std::current_exception());
    }
}

int runProgram(int argc, const char* const argv[])
{
    Console console = processConsole();
    const Programs programs = systemPrograms();
    try {
        return run(programArguments(argc, argv), console, programs);
    } catch (...) {
        RunJournal journal;
        return fail(false, {{}, console, programs, journal}, {}, std::current_exception());
    }
}

} // namespace kelpctl
