#include "commands/commands.h"

#include "asking/gateways.h"
#include "commands/archive.h"
#include "commands/completion.h"
#include "commands/exec.h"
#include "commands/lifecycle.h"
#include "commands/support.h"
#include "commands/work.h"
#include "doctor/doctor.h"
#include "failure/report.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/json.h"

#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>

namespace kelpctl {
namespace {

namespace json = boost::json;

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
    Description description = describe(found, judgement, namesOf(context.request), context.console.outColours);
    Outcome outcome{std::move(description.lines), std::move(description.object), {}};
    if (judgement.verdict == Verdict::blocked) {
        outcome.failure = makeReport(Failure("DOCTOR_FOUND_PROBLEMS"), {}, std::nullopt, context.request);
    }
    return outcome;
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
    const std::vector<std::string> candidates = completions(words, allCommands(), globalOptions());
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

constexpr std::array shells = {"bash", "powershell"};
constexpr std::array progressForms = {"json"};
constexpr std::array logLevels = {"error", "detail"};

std::string complaintOnLanguage(const std::string& code)
{
    const bool letters = !code.empty() && std::all_of(code.begin(), code.end(),
                                                      [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
    return letters ? "" : "must be a lower-case ISO 639 code such as \"de\"";
}

// Decimal, or as in C; 0 for what is no number.
long long numberIn(const std::string& text)
{
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 0);
    return *end == '\0' ? number : 0;
}

std::string complaintOnSeconds(const std::string& text)
{
    const long long seconds = numberIn(text);
    return seconds >= 1 && seconds <= 600 ? "" : "Value " + text + " not in range 1 to 600";
}

std::string complaintOnStallLimit(const std::string& text)
{
    constexpr long long day = 86400;
    const long long seconds = numberIn(text);
    return seconds >= 1 && seconds <= day ? "" : "Value " + text + " not in range 1 to 86400";
}

using Values = std::vector<std::string>;

template <auto Member>
void text(Request& request, const Values& values)
{
    request.*Member = values.front();
}

template <auto Member>
void flag(Request& request, const Values& /*values*/)
{
    request.*Member = true;
}

constexpr std::array allOptions = {
    Option{"--root", "DIR", "Installation root of the host product", text<&Request::root>},
    Option{"--release", "TEXT", "Release of the host product", text<&Request::release>},
    Option{"--wsl", nullptr, "Use WSL, whatever USE_WSL says",
           [](Request& request, const Values&) { request.backend = Backend::wsl; }},
    Option{.name = "--docker",
           .value = nullptr,
           .help = "Use Docker, whatever USE_WSL says",
           .take = [](Request& request, const Values&) { request.backend = Backend::docker; },
           .excludes = "--wsl"},
    Option{"--log", "error|detail", "Write log records to standard error",
           [](Request& request, const Values& values) {
               request.log = values.front() == "detail" ? LogLevel::detail : LogLevel::error;
           },
           logLevels},
    Option{.name = "--log-file",
           .value = "FILE",
           .help = "Append the log records to a file instead",
           .take = text<&Request::logFile>,
           .needs = "--log"},
    Option{"--json", nullptr, "Print one JSON object on standard output", flag<&Request::json>},
    Option{"--language", "CODE", "Language of the messages", text<&Request::language>, {}, complaintOnLanguage},
    Option{"--version", nullptr, "Print the version",
           [](Request& request, const Values&) { request.command = "version"; }},
};

constexpr char archiveHelp[] = "Archive, the installed one when not given";
constexpr char nameHelp[] = "Distribution or image, the release's when not given";
constexpr Option container = {"--container", "NAME", "Container, \"kelp_hub\" when not given",
                              text<&Request::container>};
constexpr Option variables = {.name = "-e",
                              .value = "NAME=VALUE",
                              .help = "Variable for the program, may be repeated",
                              .take = [](Request& request, const Values& values) { request.variables = values; },
                              .repeated = true};

constexpr Option force = {"--force", nullptr, "Try it with an archive that the backend would refuse",
                          flag<&Request::force>};
constexpr Option waiting = {
    .name = "--wait",
    .value = "SECONDS",
    .help = "How long to wait for a backend that is just starting, 0",
    .take = [](Request& request,
               const Values& values) { request.wait = std::chrono::seconds(numberIn(values.front())); },
    .complaint = complaintOnSeconds};

constexpr Option location = {
    .name = "--location",
    .value = "DIR",
    .help = "WSL: folder for the distribution's disk, the temporary one when not given",
    .take = text<&Request::location>,
    .complaint = [](const std::string& folder) { return std::string(folder.empty() ? "must name a folder" : ""); }};

constexpr Option progress = {.name = "--progress",
                             .value = "json",
                             .help = "Write one JSON object a second to standard error",
                             .take = [](Request& request, const Values&) { request.progressObjects = true; },
                             .words = progressForms};
constexpr Option stallLimit = {
    .name = "--stall-limit",
    .value = "SECONDS",
    .help = "How long nothing may move until the work counts as stalled, 120",
    .take = [](Request& request,
               const Values& values) { request.stallLimit = std::chrono::seconds(numberIn(values.front())); },
    .complaint = complaintOnStallLimit};
constexpr Option endWhenStalled = {"--end-when-stalled", nullptr, "End the work when it has stalled",
                                   flag<&Request::endWhenStalled>};

constexpr std::array setupOptions = {Option{"archive", "TEXT", archiveHelp, text<&Request::archive>},
                                     location,
                                     force,
                                     waiting,
                                     progress,
                                     stallLimit,
                                     endWhenStalled};
constexpr std::array archiveOptions = {
    Option{.name = "file", .value = "TEXT", .help = "The archive", .take = text<&Request::archive>, .required = true},
    Option{"--name", "NAME", "Image that it is to hold, the release's when not given", text<&Request::name>},
    Option{"--root-fs", nullptr, "Docker: it is to be a root file system", flag<&Request::rootFs>}};
constexpr std::array doctorOptions = {
    location,
    Option{.name = "--time-limit",
           .value = "SECONDS",
           .help = "How long to wait for each answer of wsl.exe and Docker, 10",
           .take = [](Request& request,
                      const Values& values) { request.timeLimit = std::chrono::seconds(numberIn(values.front())); },
           .complaint = complaintOnSeconds}};
constexpr std::array reportOptions = {
    Option{"file", "TEXT", "Zip archive to be made, in this folder when not given", text<&Request::archive>}};
constexpr std::array provisionOptions = {
    Option{"--archive", "FILE", archiveHelp, text<&Request::archive>},
    Option{"--name", "NAME", nameHelp, text<&Request::name>},
    Option{"--root-fs", nullptr, "Docker: the archive is a root file system; needs --name", flag<&Request::rootFs>},
    location,
    force,
    progress,
    stallLimit,
    endWhenStalled};
constexpr std::array removeOptions = {Option{"name", "TEXT", nameHelp, text<&Request::name>}};
constexpr std::array startOptions = {
    container, Option{"--image", "NAME", "Image, the release's when not given", text<&Request::image>}, waiting};
constexpr std::array stopOptions = {container};
constexpr std::array execOptions = {container, variables, waiting};
constexpr std::array prefixOptions = {
    container, Option{"--vector", nullptr, "One argument a line instead of one command line", flag<&Request::vector>}};
constexpr std::array envOptions = {variables};
constexpr std::array completionOptions = {Option{.name = "shell",
                                                 .value = "TEXT",
                                                 .help = "bash or powershell",
                                                 .take = text<&Request::shell>,
                                                 .words = shells,
                                                 .required = true}};
constexpr std::array helpOptions = {Option{.name = "command",
                                           .value = "TEXT",
                                           .help = "The command, all when not given",
                                           .take = text<&Request::topic>,
                                           .namesCommand = true}};
constexpr std::array completeOptions = {
    Option{"--next", nullptr, "A new word is to be completed", flag<&Request::nextWord>}};

constexpr std::array commandRows = {
    Command{"setup", "Create the environment, as the host's interpreter does", "kelpctl setup kelp_hub_distro.tar.gz",
            setup, setupOptions},
    Command{"teardown", "Remove the environment, as the host's interpreter does", "kelpctl teardown", teardown},
    Command{"check", "Print 0 when WSL can be used, -3 when it cannot, whichever backend is selected", "kelpctl check",
            check},
    Command{"doctor", "Examine this computer: what there is, what is missing, what to do next", "kelpctl doctor",
            doctor, doctorOptions},
    Command{"archive", "Read all of an archive: whether it is whole, what it holds, what it lacks",
            "kelpctl archive kelp_hub_distro.tar.gz", archive, archiveOptions},
    Command{"report", "Collect what support needs into a zip archive; nothing is sent", "kelpctl report report.zip",
            report, reportOptions},
    Command{"provision", "Create a distribution or an image from an archive",
            "kelpctl --docker provision --archive rootfs.tar --name my_hub --root-fs", provision, provisionOptions},
    Command{"remove", "Remove a distribution or an image", "kelpctl remove my_hub", removeEnvironment, removeOptions},
    Command{"start", "Start the container", "kelpctl --docker start --container kelp_hub --image my_hub", start,
            startOptions},
    Command{"stop", "Stop and remove the container", "kelpctl --docker stop --container kelp_hub", stop, stopOptions},
    Command{"exec", "Run the program behind \"--\" inside the environment; the exit status is the program's",
            "kelpctl exec -e LEVEL=3 -- ls -l /opt", exec, execOptions, true},
    Command{"prefix", "Print the start of a command line that runs inside the environment", "kelpctl prefix --vector",
            prefix, prefixOptions},
    Command{"env", "Print the arguments behind \"--\" and the variables, prepared for the environment",
            "kelpctl --docker env -e LEVEL=3 -- docker exec kelp_hub", env, envOptions, true},
    Command{"completion", "Print a script that teaches a shell to complete kelpctl's commands and flags",
            "source <(kelpctl completion bash)", completion, completionOptions},
    Command{"help", "Show the help of a command", "kelpctl help exec", help, helpOptions},
    // For the scripts of "completion"; nobody types it.
    Command{"complete", "Print the candidates for the last word behind \"--\"", "", complete, completeOptions, true,
            Shown::hidden},
    Command{"version", "", "", version, {}, false, Shown::asFlag},
};

} // namespace

std::span<const Command> allCommands()
{
    return commandRows;
}

std::span<const Option> globalOptions()
{
    return allOptions;
}

const Command* findCommand(const std::string& name)
{
    const auto row = std::find_if(commandRows.begin(), commandRows.end(),
                                  [&name](const Command& each) { return name == each.name; });
    return row == commandRows.end() ? nullptr : &*row;
}

} // namespace kelpctl
