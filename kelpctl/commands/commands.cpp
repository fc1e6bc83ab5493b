#include "commands/commands.h"

#include "asking/docker.h"
#include "asking/gateways.h"
#include "commands/completion.h"
#include "commands/removal.h"
#include "commands/work.h"
#include "doctor/json.h"
#include "doctor/table.h"
#include "failure/report.h"
#include "request/backend.h"
#include "request/names.h"
#include "terminal/json.h"

#include "lvm/commands.h"

#include "orb/lvm.h"

#include <array>
#include <exception>
#include <optional>

namespace kelpctl {
namespace {

namespace json = boost::json;

// What provisioning did, by the programs that ran.
Outcome provisioned(const Context& context)
{
    const std::string name = namesOf(context.request).image;
    std::optional<std::string> source;
    for (const Run& run : context.journal.runs()) {
        if (const std::string made = orb::lvm::detail::sourceOf(run.arguments); !made.empty() && run.succeeded()) {
            source = made;
        }
    }
    const std::string what = std::string("The ") + wordsOf(selectedBackend()).image + " " + name;
    Outcome outcome;
    outcome.result = json::object{{"kind", wordsOf(selectedBackend()).image},
                                  {"name", name},
                                  {"created", source.has_value()},
                                  {"source", orNull(source)}};
    outcome.lines = {source ? what + " was created from " + *source + "."
                            : what + " exists already; nothing was created."};
    return outcome;
}

Outcome setup(const Context& context)
{
    work(context, [&context] { callSetup(context.request.archive); });
    return provisioned(context);
}

Outcome provision(const Context& context)
{
    const Request& request = context.request;
    work(context, [&request] { orb::lvm::importFromTarIfNecessary(request.archive, request.name, request.rootFs); });
    return provisioned(context);
}

// A container goes on without its image.
void addContainerThatRuns(const Context& context, Outcome& outcome)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        return;
    case Backend::docker:
        break;
    }
    const Names names = namesOf(context.request);
    const std::string client = orb::lvm::getContainerExecutablePath();
    if (!client.empty() && askContainer(context.programs, client, names.container) == ContainerState::running) {
        outcome.lines.push_back("The container " + names.container + " still runs; \"" + names.invocation +
                                " stop --container " + names.container + "\" removes it.");
    }
}

Outcome removed(const Context& context)
{
    const std::string name = namesOf(context.request).image;
    Outcome outcome{{std::string("The ") + wordsOf(selectedBackend()).image + " " + name + " was removed."},
                    json::object{{"kind", wordsOf(selectedBackend()).image}, {"name", name}},
                    {}};
    addContainerThatRuns(context, outcome);
    return outcome;
}

Outcome teardown(const Context& context)
{
    work(context, [&context] {
        requireClient();
        removeThroughGateway(context);
    });
    return removed(context);
}

Outcome remove(const Context& context)
{
    work(context, [&context] {
        requireClient();
        removeImage(context);
    });
    return removed(context);
}

Outcome check(const Context& context)
{
    int status = 0;
    work(context, [&status] { status = callCheck(); });
    Outcome outcome{{std::to_string(status)}, status, {}};
    if (status != 0) {
        outcome.failure = reportOf(std::make_exception_ptr(Failure("WSL_NOT_USABLE")), context);
    }
    return outcome;
}

// Looks at everything that provisioning depends on, and changes nothing.
Outcome doctor(const Context& context)
{
    Examination found;
    work(context, [&] { found = examine(context); });
    const Judgement judgement = judge(found);
    const Names names = namesOf(context.request);
    Outcome outcome;
    outcome.lines = doctorTable(found, judgement, names, context.console.outColours);
    outcome.result = doctorObject(found, judgement, names);
    if (judgement.verdict == Verdict::blocked) {
        outcome.failure = makeReport(Failure("DOCTOR_FOUND_PROBLEMS"), {}, std::nullopt, context.request);
    }
    return outcome;
}

Outcome containerChanged(const Context& context, const char* change)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        return {{"WSL needs no container; nothing was done."}, json::object{{"container", nullptr}}, {}};
    case Backend::docker:
        break;
    }
    const std::string container = namesOf(context.request).container;
    return {{"The container " + container + " was " + change + "."}, json::object{{"container", container}}, {}};
}

Outcome start(const Context& context)
{
    const Request& request = context.request;
    work(context, [&request] {
        requireClient();
        if (!orb::lvm::startContainerIfNecessary(request.container, request.image)) {
            throw Failure("CONTAINER_NOT_STARTED");
        }
    });
    return containerChanged(context, "started");
}

Outcome stop(const Context& context)
{
    const Request& request = context.request;
    work(context, [&] {
        requireClient();
        requireContainer(context);
        if (!orb::lvm::stopContainerIfNecessary(request.container)) {
            throw Failure("CONTAINER_NOT_STOPPED");
        }
    });
    return containerChanged(context, "removed");
}

Outcome prefix(const Context& context)
{
    const std::string& container = context.request.container;
    std::vector<std::string> arguments;
    std::string line;
    work(context, [&] {
        requireClient();
        arguments = orb::lvm::getContainerArgumentsPrefix(container);
        line = orb::lvm::getContainerCommandPrefix(container);
    });
    return context.request.vector ? Outcome{arguments, arrayOf(arguments), {}} : Outcome{{line}, json::value(line), {}};
}

Outcome env(const Context& context)
{
    std::vector<std::string> arguments = context.request.program;
    std::map<std::string, std::string> environment = context.request.environment;
    orb::lvm::applySharedEnvironment(arguments, environment);
    Outcome outcome;
    json::object variables;
    for (const auto& [name, value] : environment) {
        variables.emplace(name, value);
    }
    outcome.result = json::object{{"arguments", arrayOf(arguments)}, {"environment", std::move(variables)}};
    for (const std::string& argument : arguments) {
        outcome.lines.push_back("argument: " + argument);
    }
    for (const auto& [name, value] : environment) {
        outcome.lines.emplace_back("environment: ").append(name).append("=").append(value);
    }
    return outcome;
}

Outcome completion(const Context& context)
{
    const std::string script = completionScript(context.request.shell);
    return {{script}, json::object{{"shell", context.request.shell}, {"script", script}}, {}};
}

Outcome complete(const Context& context)
{
    std::vector<std::string> words = context.request.program;
    if (context.request.nextWord || words.empty()) {
        words.emplace_back();
    }
    const std::vector<std::string> candidates = completions(words);
    return {candidates, arrayOf(candidates), {}};
}

Outcome help(const Context& context)
{
    return {{context.request.helpText}, json::object{{"text", context.request.helpText}}, {}};
}

Outcome version(const Context& /*context*/)
{
    return {{std::string("kelpctl ") + libzqorb_lvm_version + " (" + libzqorb_lvm_build_date + ")"},
            json::object{{"version", libzqorb_lvm_version}, {"built", libzqorb_lvm_build_date}},
            {}};
}

struct Command {
    const char* name;
    Outcome (*run)(const Context&);
};

constexpr std::array commands = {
    Command{"setup", setup},
    Command{"teardown", teardown},
    Command{"check", check},
    Command{"doctor", doctor},
    Command{"provision", provision},
    Command{"remove", remove},
    Command{"start", start},
    Command{"stop", stop},
    Command{"prefix", prefix},
    Command{"env", env},
    Command{"completion", completion},
    Command{"complete", complete},
    Command{"help", help},
    Command{"version", version},
};

} // namespace

Outcome perform(const Context& context)
{
    for (const Command& command : commands) {
        if (context.request.command == command.name) {
            return command.run(context);
        }
    }
    throw std::logic_error("no such command: " + context.request.command);
}

} // namespace kelpctl
