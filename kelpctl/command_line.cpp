#include "command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <memory>
#include <numeric>
#include <string_view>

namespace kelpctl {
namespace {

constexpr char programName[] = "kelpctl";
constexpr char purpose[] = "Sets up, runs and removes the Linux environment of the hub.";
constexpr char endOfOptions[] = "--";

struct CommandText {
    const char* name;
    const char* summary;
    const char* example;
};

constexpr std::array<CommandText, 13> commandTexts = {{
    {"setup", "Create the environment, as the host's interpreter does", "kelpctl setup kelp_hub_distro.tar.gz"},
    {"teardown", "Remove the environment, as the host's interpreter does", "kelpctl teardown"},
    {"check", "Print 0 when WSL can be used, -3 when it cannot, whichever backend is selected", "kelpctl check"},
    {"doctor", "Examine this computer: what there is, what is missing, what to do next", "kelpctl doctor"},
    {"provision", "Create a distribution or an image from an archive",
     "kelpctl --docker provision --archive rootfs.tar --name my_hub --root-fs"},
    {"remove", "Remove a distribution or an image", "kelpctl remove my_hub"},
    {"start", "Start the container", "kelpctl --docker start --container kelp_hub --image my_hub"},
    {"stop", "Stop and remove the container", "kelpctl --docker stop --container kelp_hub"},
    {"exec", "Run the program behind \"--\" inside the environment; the exit status is the program's",
     "kelpctl exec -e LEVEL=3 -- ls -l /opt"},
    {"prefix", "Print the start of a command line that runs inside the environment", "kelpctl prefix --vector"},
    {"env", "Print the arguments behind \"--\" and the variables, prepared for the environment",
     "kelpctl --docker env -e LEVEL=3 -- docker exec kelp_hub"},
    {"completion", "Print a script that teaches a shell to complete kelpctl's commands and flags",
     "source <(kelpctl completion bash)"},
    {"help", "Show the help of a command", "kelpctl help exec"},
}};

constexpr std::array shells = {"bash", "powershell"};
constexpr std::array logLevels = {"error", "detail"};
constexpr char environmentHelp[] =
    "\nEnvironment:\n"
    "  USE_WSL                   unset or 1: WSL; anything else: Docker\n"
    "  KORVANE_ROOT              installation root, when --root is not given\n"
    "  KORVANE_RELEASE           release, when --release is not given\n"
    "  AUX_DOCKER_ARGS           further arguments of \"docker run\", split at blanks\n"
    "  USE_DOCKER_REPOSITORY     1: pull the image from the registry before the archive is used\n"
    "  KELP_ADDITIONAL_LOGGING   1: log each distribution listing\n"
    "  NO_COLOR                  not empty: no colours\n";

std::string programHelp()
{
    std::string text = "Examples:\n";
    for (const CommandText& command : commandTexts) {
        text += std::string("  ") + command.example + "\n";
    }
    text += environmentHelp;
    text += "\nExit status: 0 done, 1 failed, 2 wrong usage, 130 interrupted; for \"exec\" the program's own.";
    return text;
}

// What the parser fills, before it becomes a request.
struct Raw {
    Request request;
    bool wsl = false;
    bool docker = false;
    bool version = false;
    std::string log;
    std::vector<std::string> variables;
    std::string helpOn;
    long timeLimit = 10;
};

std::string checkLanguage(const std::string& code)
{
    const bool letters = !code.empty() && std::all_of(code.begin(), code.end(),
                                                      [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
    return letters ? "" : "must be a lower-case ISO 639 code such as \"de\"";
}

void addGlobalFlags(CLI::App& app, Raw& raw)
{
    app.add_option("--root", raw.request.root, "Installation root of the host product")->type_name("DIR");
    app.add_option("--release", raw.request.release, "Release of the host product")->type_name("TEXT");
    CLI::Option* wsl = app.add_flag("--wsl", raw.wsl, "Use WSL, whatever USE_WSL says");
    app.add_flag("--docker", raw.docker, "Use Docker, whatever USE_WSL says")->excludes(wsl);
    CLI::Option* log =
        app.add_option("--log", raw.log, "Write log records to standard error")
            ->type_name("error|detail")
            ->check(CLI::IsMember(std::vector<std::string>(logLevels.begin(), logLevels.end())).description(""));
    app.add_option("--log-file", raw.request.logFile, "Append the log records to a file instead")
        ->type_name("FILE")
        ->needs(log);
    app.add_flag("--json", raw.request.json, "Print one JSON object on standard output");
    app.add_option("--language", raw.request.language, "Language of the messages")
        ->type_name("CODE")
        ->check(CLI::Validator(checkLanguage, ""));
    app.add_flag("--version", raw.version, "Print the version");
}

bool takesProgram(const std::string& command)
{
    return command == "exec" || command == "env" || command == "complete";
}

// The parser never sees what stands behind "--".
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        std::string usage = CLI::Formatter::make_usage(app, std::move(name));
        if (takesProgram(app->get_name())) {
            usage.insert(usage.find_last_not_of('\n') + 1, " -- PROGRAM [ARG...]");
        }
        return usage;
    }
};

CLI::App& addCommand(CLI::App& app, const CommandText& text)
{
    CLI::App* command = app.add_subcommand(text.name, text.summary);
    command->group("Commands");
    command->footer(std::string("Example: ") + text.example +
                    "\n\nThe flags of \"kelpctl --help\" may follow as well.");
    return *command;
}

void addContainer(CLI::App& command, Raw& raw)
{
    command.add_option("--container", raw.request.container, "Container, \"kelp_hub\" when not given")
        ->type_name("NAME");
}

void addVariables(CLI::App& command, Raw& raw)
{
    command.add_option("-e", raw.variables, "Variable for the program, may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

void addFlags(CLI::App& command, Raw& raw)
{
    const std::string name = command.get_name();
    if (name == "setup") {
        command.add_option("archive", raw.request.archive, "Archive, the installed one when not given");
    } else if (name == "provision") {
        command.add_option("--archive", raw.request.archive, "Archive, the installed one when not given")
            ->type_name("FILE");
        command.add_option("--name", raw.request.name, "Distribution or image, the release's when not given")
            ->type_name("NAME");
        command.add_flag("--root-fs", raw.request.rootFs, "Docker: the archive is a root file system; needs --name");
    } else if (name == "remove") {
        command.add_option("name", raw.request.name, "Distribution or image, the release's when not given");
    } else if (name == "start") {
        addContainer(command, raw);
        command.add_option("--image", raw.request.image, "Image, the release's when not given")->type_name("NAME");
    } else if (name == "stop") {
        addContainer(command, raw);
    } else if (name == "exec") {
        addContainer(command, raw);
        addVariables(command, raw);
    } else if (name == "prefix") {
        addContainer(command, raw);
        command.add_flag("--vector", raw.request.vector, "One argument a line instead of one command line");
    } else if (name == "env") {
        addVariables(command, raw);
    } else if (name == "doctor") {
        command.add_option("--time-limit", raw.timeLimit, "How long to wait for each answer of wsl.exe and Docker, 10")
            ->type_name("SECONDS")
            ->check(CLI::Range(1L, 600L).description(""));
    } else if (name == "completion") {
        command.add_option("shell", raw.request.shell, "bash or powershell")
            ->required()
            ->check(CLI::IsMember(std::vector<std::string>(shells.begin(), shells.end())).description(""));
    } else if (name == "help") {
        command.add_option("command", raw.helpOn, "The command, all when not given");
    }
}

// For the scripts of "completion"; nobody types it.
void addCompleteCommand(CLI::App& app, Raw& raw)
{
    CLI::App* command = app.add_subcommand("complete", "Print the candidates for the last word behind \"--\"");
    command->group("");
    command->add_flag("--next", raw.request.nextWord, "A new word is to be completed");
}

// The parser takes "--name=" for a flag whose value is still to come.
std::vector<std::string> withEmptyValuesApart(const std::vector<std::string>& arguments)
{
    std::vector<std::string> result;
    bool optionsEnded = false;
    for (const std::string& argument : arguments) {
        optionsEnded = optionsEnded || argument == endOfOptions;
        if (!optionsEnded && argument.size() > 3 && argument.starts_with("--") && argument.ends_with('=')) {
            result.push_back(argument.substr(0, argument.size() - 1));
            result.emplace_back();
        } else {
            result.push_back(argument);
        }
    }
    return result;
}

void addVariable(Request& request, const std::string& text)
{
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos || text.front() == '/') {
        // A name of nothing but a flag ("/p") is none. The text stays out of the message: it may be a secret.
        throw UsageError(request.command, "-e takes NAME=VALUE.");
    }
    request.environment.insert_or_assign(text.substr(0, equals), text.substr(equals + 1));
}

Request finished(Raw&& raw, std::string command)
{
    Request request = std::move(raw.request);
    request.command = std::move(command);
    if (raw.wsl) {
        request.backend = Backend::wsl;
    } else if (raw.docker) {
        request.backend = Backend::docker;
    }
    if (!raw.log.empty()) {
        request.log = raw.log == "detail" ? LogLevel::detail : LogLevel::error;
    }
    request.timeLimit = std::chrono::seconds(raw.timeLimit);
    for (const std::string& variable : raw.variables) {
        addVariable(request, variable);
    }
    return request;
}

std::string parsedCommand(const CLI::App& app)
{
    const std::vector<CLI::App*> commands = app.get_subcommands();
    return commands.empty() ? std::string() : commands.front()->get_name();
}

// How many letters must be changed, added or left out.
std::size_t distance(const std::string& from, const std::string& to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t change = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
        }
    }
    return row.back();
}

std::vector<std::string> commandNames()
{
    std::vector<std::string> names;
    names.reserve(commandTexts.size());
    for (const CommandText& command : commandTexts) {
        names.emplace_back(command.name);
    }
    return names;
}

// Whether the word was meant for the name: a few letters wrong, or its beginning, in whatever case.
bool resembles(std::string word, const std::string& name)
{
    constexpr std::size_t typingErrors = 2;
    constexpr std::size_t enough = 3;
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return distance(word, name) <= typingErrors || (word.size() >= enough && name.starts_with(word));
}

std::string withSuggestion(const std::string& text, const std::string& word, const std::vector<std::string>& names)
{
    const auto meant =
        std::find_if(names.begin(), names.end(), [&word](const std::string& name) { return resembles(word, name); });
    return meant == names.end() ? text : text + " Did you mean \"" + *meant + "\"?";
}

std::string noSuchCommand(const std::string& word)
{
    std::vector<std::string> names = commandNames();
    names.insert(names.end(), {"--version", "--docker", "--wsl"});
    const std::string text = "There is no command \"" + word + "\".";
    // A flag's name without its hyphens is meant for the flag.
    return std::find(names.begin(), names.end(), "--" + word) != names.end()
               ? text + " Did you mean \"--" + word + "\"?"
               : withSuggestion(text, word, names);
}

std::vector<std::string> longFlags(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

// The flags of the command, if there is one, and of all.
std::string noSuchFlag(const CLI::App& app, const std::string& word)
{
    std::vector<std::string> names = longFlags(app);
    for (const CLI::App* command : app.get_subcommands()) {
        const std::vector<std::string> own = longFlags(*command);
        names.insert(names.begin(), own.begin(), own.end());
    }
    return withSuggestion("There is no flag \"" + word + "\".", word, names);
}

std::string unexpected(const CLI::App& app, const std::string& command, const std::string& word)
{
    if (word.starts_with("-")) {
        return noSuchFlag(app, word);
    }
    if (command.empty()) {
        return noSuchCommand(word);
    }
    if (word == "docker" || word == "wsl") {
        return "There is no place for the argument \"" + word + "\". Did you mean \"--" + word + "\"?";
    }
    if (takesProgram(command)) {
        return "The program needs \"--\" in front of it: \"kelpctl " + command + " -- " + word + "\".";
    }
    return "There is no place for the argument \"" + word + "\".";
}

void build(CLI::App& app, Raw& raw)
{
    // A path that begins with "/" is no flag, on no system.
    app.allow_windows_style_options(false);
    app.require_subcommand(0, 1);
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.fallthrough();
    app.footer(programHelp());
    addGlobalFlags(app, raw);
    for (const CommandText& text : commandTexts) {
        addFlags(addCommand(app, text), raw);
    }
    addCompleteCommand(app, raw);
}

std::string helpOn(const std::string& command)
{
    Raw raw;
    CLI::App app(purpose, programName);
    build(app, raw);
    if (command.empty()) {
        return app.help();
    }
    try {
        return app.get_subcommand(command)->help(programName);
    } catch (const CLI::OptionNotFound&) {
        throw UsageError("help", noSuchCommand(command));
    }
}

Request parseWith(const std::vector<std::string>& arguments)
{
    Raw raw;
    CLI::App app(purpose, programName);
    build(app, raw);
    try {
        std::vector<std::string> reversed = withEmptyValuesApart(arguments);
        std::reverse(reversed.begin(), reversed.end());
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        raw.request.helpText = app.help();
        return finished(std::move(raw), "help");
    } catch (const CLI::ExtrasError& error) {
        const std::vector<std::string> extras = app.remaining(true);
        const std::string command = parsedCommand(app);
        throw UsageError(command, extras.empty() ? error.what() : unexpected(app, command, extras.front()));
    } catch (const CLI::ParseError& error) {
        throw UsageError(parsedCommand(app), error.what());
    }
    if (raw.version) {
        return finished(std::move(raw), "version");
    }
    if (app.get_subcommands().empty()) {
        throw UsageError({}, "A command is required.");
    }
    if (parsedCommand(app) == "help") {
        raw.request.helpText = helpOn(raw.helpOn);
    }
    return finished(std::move(raw), parsedCommand(app));
}

std::vector<std::string> allowedValues(const std::string& flag)
{
    if (flag == "--log") {
        return {logLevels.begin(), logLevels.end()};
    }
    return {};
}

std::vector<Flag> flagsOf(const CLI::App& app)
{
    std::vector<Flag> flags;
    for (const CLI::Option* option : app.get_options()) {
        const bool takesValue = option->get_items_expected_max() > 0;
        for (const std::string& name : option->get_lnames()) {
            flags.push_back({"--" + name, takesValue, allowedValues("--" + name)});
        }
        for (const std::string& name : option->get_snames()) {
            flags.push_back({"-" + name, takesValue, {}});
        }
    }
    return flags;
}

std::vector<std::string> wordsBehind(const std::string& command)
{
    if (command == "completion") {
        return {shells.begin(), shells.end()};
    }
    return command == "help" ? commandNames() : std::vector<std::string>();
}

void requireWhatBelongsTogether(const Request& request)
{
    if (request.command == "provision" && request.rootFs && request.name.empty()) {
        throw UsageError(request.command, "--root-fs needs --name: a root file system has no image name of its own.");
    }
    if (request.command == "exec" && (request.program.empty() || request.program.front().empty())) {
        throw UsageError(request.command, "A program is required, with \"--\" in front of it.");
    }
}

} // namespace

std::vector<CommandShape> commandShapes()
{
    Raw raw;
    CLI::App app(purpose, programName);
    build(app, raw);
    std::vector<CommandShape> shapes = {{{}, flagsOf(app), {}}};
    for (const CommandText& text : commandTexts) {
        shapes.push_back({text.name, flagsOf(*app.get_subcommand(text.name)), wordsBehind(text.name)});
    }
    return shapes;
}

Request parseCommandLine(const std::vector<std::string>& arguments)
{
    const auto mark = std::find(arguments.begin(), arguments.end(), endOfOptions);
    // What stands behind the mark is kept away from the parser, which would give some texts a meaning.
    Request request = parseWith({arguments.begin(), mark});
    if (mark != arguments.end() && takesProgram(request.command)) {
        request.program.assign(std::next(mark), arguments.end());
    } else if (mark != arguments.end()) {
        request = parseWith(arguments);
    }
    requireWhatBelongsTogether(request);
    return request;
}

bool asksForJson(const std::vector<std::string>& arguments)
{
    const auto mark = std::find(arguments.begin(), arguments.end(), endOfOptions);
    return std::find(arguments.begin(), mark, "--json") != mark;
}

std::optional<std::string> askedLanguage(const std::vector<std::string>& arguments)
{
    constexpr std::string_view flag = "--language";
    for (std::size_t index = 0; index < arguments.size() && arguments[index] != endOfOptions; ++index) {
        const std::string& argument = arguments[index];
        if (argument == flag && index + 1 < arguments.size()) {
            return arguments[index + 1];
        }
        if (argument.starts_with(std::string(flag) + "=")) {
            return argument.substr(flag.size() + 1);
        }
    }
    return std::nullopt;
}

} // namespace kelpctl
