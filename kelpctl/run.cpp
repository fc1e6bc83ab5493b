#include "run.h"

#include "backend.h"
#include "command_line.h"
#include "commands.h"
#include "inside.h"
#include "log.h"
#include "output.h"
#include "platform.h"

#include "host/configuration.h"
#include "host/process.h"

#include <iostream>

namespace kelpctl {
namespace {

void configureHost(const Request& request)
{
    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    if (request.root) {
        configuration.installationRoot = request.root;
    }
    if (request.release) {
        configuration.release = request.release;
    }
    if (request.language) {
        configuration.language = *request.language;
    }
    configuration.channelMasks["orb"] = channelMask(request.log);
    foundation::core::config::configure(configuration);
}

int finish(bool json, Console& console, const std::string& command, const Outcome& outcome)
{
    if (json) {
        writeJson(console, command, outcome);
    } else {
        writeText(console, command, outcome);
    }
    if (!console.out) {
        writeText(console, command,
                  {{}, nullptr, reportOf(Failure("OUTPUT_NOT_WRITABLE", "The result could not be written.", {}))});
        return statusFailed;
    }
    return outcome.failure ? outcome.failure->status : statusDone;
}

int runRequest(const Request& request, Console& console)
{
    if (request.command == "help") {
        return finish(false, console, request.command, {{request.helpText}, nullptr, {}});
    }
    selectBackend(request.backend);
    // The sink comes before the levels: a record must not go where no sink is.
    const Log log(request, console.error);
    configureHost(request);
    if (request.command == "exec") {
        return runInside(request, console);
    }
    return finish(request.json, console, request.command, perform(request, console));
}

int fail(bool json, Console& console, const std::string& command, const std::exception_ptr& error)
{
    return finish(json, console, command, {{}, nullptr, reportOf(error)});
}

Console processConsole()
{
    const bool errorIsTerminal = isTerminal(StandardStream::error);
    const bool interactive = errorIsTerminal && isTerminal(StandardStream::input) && isTerminal(StandardStream::output);
    return {std::cout, std::cerr, errorIsTerminal, interactive, [](const auto& arguments, const auto& environment) {
                return orb::process::detail::runAttached(arguments, environment);
            }};
}

} // namespace

int run(const std::vector<std::string>& arguments, Console& console)
{
    Request request;
    try {
        request = parseCommandLine(arguments);
    } catch (const UsageError& error) {
        return fail(asksForJson(arguments), console, error.command(), std::current_exception());
    } catch (...) {
        return fail(asksForJson(arguments), console, {}, std::current_exception());
    }
    try {
        return runRequest(request, console);
    } catch (...) {
        return fail(request.json, console, request.command, std::current_exception());
    }
}

int runProgram(int argc, const char* const argv[])
{
    Console console = processConsole();
    try {
        return run(programArguments(argc, argv), console);
    } catch (...) {
        return fail(false, console, {}, std::current_exception());
    }
}

} // namespace kelpctl
