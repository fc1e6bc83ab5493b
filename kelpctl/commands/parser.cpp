#include "commands/parser.h"

#include "commands/command_texts.h"
#include "commands/suggestions.h"
#include "failure/usage_error.h"

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

// An option with a text as its value.
template <class Text>
CLI::Option* addText(CLI::App& app, const char* name, Text& value, const char* description, const char* type = "TEXT")
{
    const auto take = [&value](const CLI::results_t& results) {
        value = results.front();
        return true;
    };
    return app.add_option(name, take, description)->type_name(type);
}

CLI::Option* addSwitch(CLI::App& app, const char* name, bool& value, const char* description)
{
    return app.add_flag_callback(
        name, [&value] { value = true; }, description);
}

// Refuses all other words.
template <class Words>
void limitTo(CLI::Option* option, const Words& words)
{
    std::string list;
    for (const char* word : words) {
        list += (list.empty() ? "" : ",") + std::string(word);
    }
    option->check([&words, list](const std::string& text) {
        const bool known = std::find(words.begin(), words.end(), text) != words.end();
        return known ? std::string() : text + " not in {" + list + "}";
    });
}

std::string checkLanguage(const std::string& code)
{
    const bool letters = !code.empty() && std::all_of(code.begin(), code.end(),
                                                      [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
    return letters ? "" : "must be a lower-case ISO 639 code such as \"de\"";
}

std::string checkTimeLimit(const std::string& text)
{
    long seconds = 0;
    const bool good = CLI::detail::lexical_cast(text, seconds) && seconds >= 1 && seconds <= 600;
    return good ? "" : "Value " + text + " not in range 1 to 600";
}

void addGlobalFlags(CLI::App& app, ParsedLine& line)
{
    addText(app, "--root", line.request.root, "Installation root of the host product", "DIR");
    addText(app, "--release", line.request.release, "Release of the host product");
    CLI::Option* wsl = addSwitch(app, "--wsl", line.wsl, "Use WSL, whatever USE_WSL says");
    addSwitch(app, "--docker", line.docker, "Use Docker, whatever USE_WSL says")->excludes(wsl);
    CLI::Option* log = addText(app, "--log", line.log, "Write log records to standard error", "error|detail");
    limitTo(log, logLevels);
    addText(app, "--log-file", line.request.logFile, "Append the log records to a file instead", "FILE")->needs(log);
    addSwitch(app, "--json", line.request.json, "Print one JSON object on standard output");
    addText(app, "--language", line.request.language, "Language of the messages", "CODE")->check(checkLanguage);
    addSwitch(app, "--version", line.version, "Print the version");
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

void addContainer(CLI::App& command, ParsedLine& line)
{
    addText(command, "--container", line.request.container, "Container, \"kelp_hub\" when not given", "NAME");
}

void addVariables(CLI::App& command, ParsedLine& line)
{
    const auto take = [&line](const CLI::results_t& results) {
        line.variables = results;
        return true;
    };
    command.add_option("-e", take, "Variable for the program, may be repeated")
        ->type_name("NAME=VALUE")
        ->expected(1, -1)
        ->allow_extra_args(false);
}

void addTimeLimit(CLI::App& command, ParsedLine& line)
{
    const auto take = [&line](const CLI::results_t& results) {
        return CLI::detail::lexical_cast(results.front(), line.timeLimit);
    };
    command.add_option("--time-limit", take, "How long to wait for each answer of wsl.exe and Docker, 10")
        ->type_name("SECONDS")
        ->check(checkTimeLimit);
}

void addFlags(CLI::App& command, ParsedLine& line)
{
    constexpr char archive[] = "Archive, the installed one when not given";
    constexpr char image[] = "Distribution or image, the release's when not given";
    const std::string name = command.get_name();
    if (name == "setup") {
        addText(command, "archive", line.request.archive, archive);
    } else if (name == "provision") {
        addText(command, "--archive", line.request.archive, archive, "FILE");
        addText(command, "--name", line.request.name, image, "NAME");
        addSwitch(command, "--root-fs", line.request.rootFs, "Docker: the archive is a root file system; needs --name");
    } else if (name == "remove") {
        addText(command, "name", line.request.name, image);
    } else if (name == "start") {
        addContainer(command, line);
        addText(command, "--image", line.request.image, "Image, the release's when not given", "NAME");
    } else if (name == "stop") {
        addContainer(command, line);
    } else if (name == "exec") {
        addContainer(command, line);
        addVariables(command, line);
    } else if (name == "prefix") {
        addContainer(command, line);
        addSwitch(command, "--vector", line.request.vector, "One argument a line instead of one command line");
    } else if (name == "env") {
        addVariables(command, line);
    } else if (name == "doctor") {
        addTimeLimit(command, line);
    } else if (name == "completion") {
        limitTo(addText(command, "shell", line.request.shell, "bash or powershell")->required(), shells);
    } else if (name == "help") {
        addText(command, "command", line.helpOn, "The command, all when not given");
    }
}

// For the scripts of "completion"; nobody types it.
void addCompleteCommand(CLI::App& app, ParsedLine& line)
{
    CLI::App* command = app.add_subcommand("complete", "Print the candidates for the last word behind \"--\"");
    command->group("");
    addSwitch(*command, "--next", line.request.nextWord, "A new word is to be completed");
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
    addGlobalFlags(app, line);
    for (const CommandText& text : commandTexts) {
        addFlags(addCommand(app, text), line);
    }
    addCompleteCommand(app, line);
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

std::map<std::string, std::vector<Flag>> allFlags()
{
    ParsedLine line;
    CLI::App app(purpose, programName);
    build(app, line);
    std::map<std::string, std::vector<Flag>> flags = {{{}, flagsOf(app)}};
    for (const CommandText& text : commandTexts) {
        flags[text.name] = flagsOf(*app.get_subcommand(text.name));
    }
    return flags;
}

} // namespace kelpctl
