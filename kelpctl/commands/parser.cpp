#include "commands/parser.h"

#include "commands/commands.h"
#include "failure/failure.h"
#include "terminal/text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <utility>

// The options are declared through functions of their own: what the library does by templates, it does for each type
// again, and that takes the compiler longer than everything else here.
namespace kelpctl {
namespace {

constexpr char programName[] = "kelpctl";
constexpr char purpose[] = "Sets up, runs and removes the Linux environment of the hub.";
constexpr char environmentHelp[] =
    "\nEnvironment:\n"
    "  USE_WSL                   unset or 1: WSL; anything else: Docker\n"
    "  KORVANE_ROOT              installation root, when --root is not given\n"
    "  KORVANE_RELEASE           release, when --release is not given\n"
    "  AUX_DOCKER_ARGS           further arguments of \"docker run\", split at blanks\n"
    "  USE_DOCKER_REPOSITORY     1: pull the image from the registry before the archive is used\n"
    "  KELP_ADDITIONAL_LOGGING   1: log each distribution listing\n"
    "  NO_COLOR                  not empty: no colours\n";

// Below the flags: examples, variables, exit statuses.
std::string programHelp()
{
    std::string text = "Examples:\n";
    for (const Command& command : allCommands()) {
        text += command.shown == Shown::listed ? std::string("  ") + command.example + "\n" : std::string();
    }
    text += environmentHelp;
    text += "\nExit status: 0 done, 1 failed, 2 wrong usage, 130 interrupted; for \"exec\" the program's own.";
    return text;
}

// Refuses all other words.
void limitTo(CLI::Option* added, std::span<const char* const> words)
{
    std::string list;
    for (const char* word : words) {
        list += (list.empty() ? "" : ",") + std::string(word);
    }
    added->check([words, list](const std::string& text) {
        const bool known = std::find(words.begin(), words.end(), text) != words.end();
        return known ? std::string() : text + " not in {" + list + "}";
    });
}

CLI::Option* addSwitch(CLI::App& app, const Option& option, Request& request)
{
    return app.add_flag_callback(
        option.name, [&option, &request] { option.take(request, {}); }, option.help);
}

CLI::Option* addValue(CLI::App& app, const Option& option, Request& request)
{
    const auto take = [&option, &request](const CLI::results_t& results) {
        option.take(request, results);
        return true;
    };
    CLI::Option* added = app.add_option(option.name, take, option.help)->type_name(option.value);
    if (!option.words.empty()) {
        limitTo(added, option.words);
    }
    if (option.complaint != nullptr) {
        added->check(option.complaint);
    }
    if (option.repeated) {
        added->expected(1, -1)->allow_extra_args(false);
    }
    return added->required(option.required);
}

void addOption(CLI::App& app, const Option& option, Request& request)
{
    CLI::Option* added = option.value == nullptr ? addSwitch(app, option, request) : addValue(app, option, request);
    if (option.needs != nullptr) {
        added->needs(app.get_option(option.needs));
    }
    if (option.excludes != nullptr) {
        added->excludes(app.get_option(option.excludes));
    }
}

// The parser never sees what stands behind "--".
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        std::string usage = CLI::Formatter::make_usage(app, std::move(name));
        const Command* command = findCommand(app->get_name());
        if (command != nullptr && command->takesProgram) {
            usage.insert(usage.find_last_not_of('\n') + 1, " -- PROGRAM [ARG...]");
        }
        return usage;
    }
};

void addCommand(CLI::App& app, const Command& command, Request& request)
{
    if (command.shown == Shown::asFlag) {
        return;
    }
    CLI::App* added = app.add_subcommand(command.name, command.summary);
    const bool listed = command.shown == Shown::listed;
    added->group(listed ? "Commands" : "");
    if (listed) {
        added->footer(std::string("Example: ") + command.example +
                      "\n\nThe flags of \"kelpctl --help\" may follow as well.");
    }
    for (const Option& option : command.options) {
        addOption(*added, option, request);
    }
}

void build(CLI::App& app, Request& request)
{
    // A path that begins with "/" is no flag, on no system.
    app.allow_windows_style_options(false);
    app.require_subcommand(0, 1);
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.fallthrough();
    app.footer(programHelp());
    for (const Option& option : globalOptions()) {
        addOption(app, option, request);
    }
    for (const Command& command : allCommands()) {
        addCommand(app, command, request);
    }
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

// Whether the word was meant for the name: a few letters wrong, or its beginning, in whatever case.
bool resembles(const std::string& given, const std::string& name)
{
    constexpr std::size_t typingErrors = 2;
    constexpr std::size_t enough = 3;
    const std::string word = lowered(given);
    return distance(word, name) <= typingErrors || (word.size() >= enough && name.starts_with(word));
}

std::string withSuggestion(const std::string& text, const std::string& word, const std::vector<std::string>& names)
{
    const auto meant =
        std::find_if(names.begin(), names.end(), [&word](const std::string& name) { return resembles(word, name); });
    return meant == names.end() ? text : text + " Did you mean \"" + *meant + "\"?";
}

void addLongFlags(std::vector<std::string>& names, std::span<const Option> options)
{
    names.emplace_back("--help");
    for (const Option& option : options) {
        if (std::string_view(option.name).starts_with("--")) {
            names.emplace_back(option.name);
        }
    }
}

std::string noSuchCommand(const std::string& word)
{
    std::vector<std::string> names = listedNames(allCommands());
    names.insert(names.end(), {"--version", "--docker", "--wsl"});
    const std::string text = "There is no command \"" + word + "\".";
    // A flag's name without its hyphens is meant for the flag.
    return std::find(names.begin(), names.end(), "--" + word) != names.end()
               ? text + " Did you mean \"--" + word + "\"?"
               : withSuggestion(text, word, names);
}

// The word stands where nothing may: behind the command, if there is one.
std::string unexpected(const std::string& command, const std::string& word)
{
    if (word.starts_with("-")) {
        std::vector<std::string> flags;
        if (!command.empty()) {
            addLongFlags(flags, findCommand(command)->options);
        }
        addLongFlags(flags, globalOptions());
        return withSuggestion("There is no flag \"" + word + "\".", word, flags);
    }
    if (command.empty()) {
        return noSuchCommand(word);
    }
    if (word == "docker" || word == "wsl") {
        return "There is no place for the argument \"" + word + "\". Did you mean \"--" + word + "\"?";
    }
    if (findCommand(command)->takesProgram) {
        return "The program needs \"--\" in front of it: \"kelpctl " + command + " -- " + word + "\".";
    }
    return "There is no place for the argument \"" + word + "\".";
}

std::string helpOn(const std::string& command)
{
    Request request;
    CLI::App app(purpose, programName);
    build(app, request);
    if (command.empty()) {
        return app.help();
    }
    try {
        return app.get_subcommand(command)->help(programName);
    } catch (const CLI::OptionNotFound&) {
        throw UsageError("help", noSuchCommand(command));
    }
}

} // namespace

Request parse(std::vector<std::string> arguments)
{
    Request request;
    CLI::App app(purpose, programName);
    build(app, request);
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        request.command = "help";
        request.helpText = app.help();
        return request;
    } catch (const CLI::ExtrasError& error) {
        const std::vector<std::string> extras = app.remaining(true);
        const std::string command = parsedCommand(app);
        throw UsageError(command, extras.empty() ? error.what() : unexpected(command, extras.front()));
    } catch (const CLI::ParseError& error) {
        throw UsageError(parsedCommand(app), error.what());
    }
    // The flag "--version" is a command by itself.
    if (request.command.empty()) {
        request.command = parsedCommand(app);
    }
    if (request.command == "help") {
        request.helpText = helpOn(request.topic);
    }
    return request;
}

} // namespace kelpctl
