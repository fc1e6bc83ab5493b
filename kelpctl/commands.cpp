#include "commands.h"

#include "backend.h"
#include "gateways.h"
#include "progress.h"
#include "removal.h"

#include "orb/lvm.h"

#include <array>
#include <functional>
#include <iostream>
#include <optional>

namespace kelpctl {
namespace {

// Log records and the progress line would spoil each other.
bool showsProgress(const Request& request, const Console& console)
{
    const bool logsToError = request.log != LogLevel::none && !request.logFile;
    return console.errorIsTerminal && !logsToError;
}

// Does work that may take a while. The library reports a failed registry pull on std::cout, where only results belong;
// it is shown when the progress line is gone.
void work(const Request& request, Console& console, const std::function<void()>& step)
{
    const StreamDetour detour(std::cout, console.error);
    std::optional<Progress> progress;
    if (showsProgress(request, console)) {
        progress.emplace(console.error, "kelpctl " + request.command);
    }
    step();
}

Outcome setup(const Request& request, Console& console)
{
    work(request, console, [&request] { callSetup(request.archive); });
    return {};
}

Outcome teardown(const Request& request, Console& console)
{
    work(request, console, [] {
        requireClient();
        removeThroughGateway();
    });
    return {};
}

Outcome check(const Request& /*request*/, Console& /*console*/)
{
    const int status = callCheck();
    Outcome outcome{{std::to_string(status)}, status, {}};
    if (status != 0) {
        outcome.failure = reportOf(Failure("WSL_NOT_USABLE", "WSL cannot list its distributions.", {}));
    }
    return outcome;
}

Outcome provision(const Request& request, Console& console)
{
    work(request, console,
         [&request] { orb::lvm::importFromTarIfNecessary(request.archive, request.name, request.rootFs); });
    return {};
}

Outcome remove(const Request& request, Console& console)
{
    work(request, console, [&request] {
        requireClient();
        removeImage(request.name);
    });
    return {};
}

std::vector<std::string> containerEvidence(const Request& request)
{
    return {"container " + (request.container.empty() ? "kelp_hub" : request.container)};
}

Outcome start(const Request& request, Console& console)
{
    work(request, console, [&request] {
        requireClient();
        if (!orb::lvm::startContainerIfNecessary(request.container, request.image)) {
            throw Failure("CONTAINER_NOT_STARTED", "The container could not be started.", containerEvidence(request));
        }
    });
    return {};
}

Outcome stop(const Request& request, Console& console)
{
    work(request, console, [&request] {
        requireClient();
        if (!orb::lvm::stopContainerIfNecessary(request.container)) {
            throw Failure("CONTAINER_NOT_STOPPED", "The container could not be stopped.", containerEvidence(request));
        }
    });
    return {};
}

Outcome prefix(const Request& request, Console& /*console*/)
{
    if (request.vector) {
        const std::vector<std::string> arguments = orb::lvm::getContainerArgumentsPrefix(request.container);
        return {arguments, arguments, {}};
    }
    const std::string line = orb::lvm::getContainerCommandPrefix(request.container);
    return {{line}, line, {}};
}

Outcome env(const Request& request, Console& /*console*/)
{
    std::vector<std::string> arguments = request.program;
    std::map<std::string, std::string> environment = request.environment;
    orb::lvm::applySharedEnvironment(arguments, environment);
    Outcome outcome;
    outcome.result = {{"arguments", arguments}, {"environment", environment}};
    for (const std::string& argument : arguments) {
        outcome.lines.push_back("argument: " + argument);
    }
    for (const auto& [name, value] : environment) {
        outcome.lines.emplace_back("environment: ").append(name).append("=").append(value);
    }
    return outcome;
}

Outcome version(const Request& /*request*/, Console& /*console*/)
{
    return {{std::string("kelpctl ") + libzqorb_lvm_version + " (" + libzqorb_lvm_build_date + ")"},
            {{"version", libzqorb_lvm_version}, {"built", libzqorb_lvm_build_date}},
            {}};
}

struct Command {
    const char* name;
    Outcome (*run)(const Request&, Console&);
};

constexpr std::array commands = {
    Command{"setup", setup},   Command{"teardown", teardown}, Command{"check", check}, Command{"provision", provision},
    Command{"remove", remove}, Command{"start", start},       Command{"stop", stop},   Command{"prefix", prefix},
    Command{"env", env},       Command{"version", version},
};

} // namespace

Outcome perform(const Request& request, Console& console)
{
    for (const Command& command : commands) {
        if (request.command == command.name) {
            return command.run(request, console);
        }
    }
    throw std::logic_error("no such command: " + request.command);
}

} // namespace kelpctl
