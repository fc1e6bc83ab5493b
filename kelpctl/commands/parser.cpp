#include "commands/parser.h"

#include "commands/commands.h"
#include "commands/suggestions.h"
#include "failure/failure.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <memory>
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

// Refuses all numbers outside, and what is none.
void limitTo(CLI::Option* added, const Range& range)
{
    added->check([range](const std::string& text) {
        long number = 0;
        const bool good = CLI::detail::lexical_cast(text, number) && number >= range.lowest && number <= range.highest;
        return good ? std::string()
                    : "Value " + text + " not in range " + std::to_string(range.lowest) + " to " +
                          std::to_string(range.highest);
    });
}

// A number may be written in many ways.
std::vector<std::string> plainNumber(const std::string& text)
{
    long number = 0;
    CLI::detail::lexical_cast(text, number);
    return {std::to_string(number)};
}

CLI::Option* addSwitch(CLI::App& app, const Option& option, ParsedLine& line)
{
    return app.add_flag_callback(
        option.name, [&option, &line] { option.take(line, {}); }, option.help);
}

CLI::Option* addValue(CLI::App& app, const Option& option, ParsedLine& line)
{
    const bool number = option.range.highest > 0;
    const auto take = [&option, &line, number](const CLI::results_t& results) {
        option.take(line, number ? plainNumber(results.front()) : results);
        return true;
    };
    CLI::Option* added = app.add_option(option.name, take, option.help)->type_name(option.value);
    if (!option.words.empty()) {
        limitTo(added, option.words);
    }
    if (number) {
        limitTo(added, option.range);
    }
    if (option.complaint != nullptr) {
        added->check(option.complaint);
    }
    if (option.repeated) {
        added->expected(1, -1)->allow_extra_args(false);
    }
    return added->required(option.required);
}

void addOption(CLI::App& app, const Option& option, ParsedLine& line)
{
    CLI::Option* added = option.value == nullptr ? addSwitch(app, option, line) : addValue(app, option, line);
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

void addCommand(CLI::App& app, const Command& command, ParsedLine& line)
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
        addOption(*added, option, line);
    }
}

void build(CLI::App& app, ParsedLine& line)
{
    // A path that begins with "/" is no flag, on no system.
    app.allow_windows_style_options(false);
    app.require_subcommand(0, 1);
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.fallthrough();
    app.footer(programHelp());
    for (const Option& option : globalOptions()) {
        addOption(app, option, line);
    }
    for (const Command& command : allCommands()) {
        addCommand(app, command, line);
    }
}

std::string parsedCommand(const CLI::App& app)
{
    const std::vector<CLI::App*> commands = app.get_subcommands();
    return commands.empty() ? std::string() : commands.front()->get_name();
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
std::vector<std::string> possibleFlags(const CLI::App& app)
{
    std::vector<std::string> names = longFlags(app);
    for (const CLI::App* command : app.get_subcommands()) {
        const std::vector<std::string> own = longFlags(*command);
        names.insert(names.begin(), own.begin(), own.end());
    }
    return names;
}

} // namespace

ParsedLine parse(std::vector<std::string> arguments)
{
    ParsedLine line;
    CLI::App app(purpose, programName);
    build(app, line);
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        line.help = true;
        line.request.helpText = app.help();
    } catch (const CLI::ExtrasError& error) {
        const std::vector<std::string> extras = app.remaining(true);
        const std::string command = parsedCommand(app);
        throw UsageError(command,
                         extras.empty() ? error.what() : unexpected(command, extras.front(), possibleFlags(app)));
    } catch (const CLI::ParseError& error) {
        throw UsageError(parsedCommand(app), error.what());
    }
    line.request.command = parsedCommand(app);
    return line;
}

std::optional<std::string> helpOn(const std::string& command)
{
    ParsedLine line;
    CLI::App app(purpose, programName);
    build(app, line);
    if (command.empty()) {
        return app.help();
    }
    try {
        return app.get_subcommand(command)->help(programName);
    } catch (const CLI::OptionNotFound&) {
        return std::nullopt;
    }
}

} // namespace kelpctl
