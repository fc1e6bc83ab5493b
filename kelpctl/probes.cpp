#include "probes.h"

#include "json.h"
#include "text.h"

#include "lvm/commands.h"
#include "lvm/text.h"

#include "host/text.h"

#include <algorithm>
#include <array>
#include <exception>

namespace kelpctl {
namespace {

using foundation::core::text::readable;
namespace json = boost::json;
namespace rules = orb::lvm::detail;

// A program may print any amount; no answer is that long.
std::string_view beginning(std::string_view captured)
{
    constexpr std::size_t longest = 1 << 20;
    return captured.substr(0, longest);
}

const std::map<std::string, std::string>& plainTexts()
{
    static const std::map<std::string, std::string> variables = {{"WSL_UTF8", "1"}, {"WSL_DISABLE_WARNINGS", "1"}};
    return variables;
}

// What stands there under the name, null for nothing.
const json::value* memberOf(const json::value* value, const char* name)
{
    const json::object* object = value != nullptr ? value->if_object() : nullptr;
    return object != nullptr ? object->if_contains(name) : nullptr;
}

std::string textAt(const json::value& value, const char* part, const char* name)
{
    const json::value* found = memberOf(memberOf(&value, part), name);
    return found != nullptr && found->is_string() ? std::string(found->get_string()) : std::string();
}

bool isNumber(const std::string& word)
{
    return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "* NAME STATE VERSION", the mark for the default only. Any other line is a header.
std::optional<Distribution> distributionRow(const std::string& line)
{
    std::vector<std::string> words = rules::words(line);
    const bool isDefault = !words.empty() && words.front() == "*";
    if (isDefault) {
        words.erase(words.begin());
    }
    if (words.size() != 3 || !isNumber(words.back()) || words.back().size() > 1) {
        return std::nullopt;
    }
    return Distribution{words[0], words[1], words[2].front() - '0', isDefault};
}

void addMissing(std::vector<Distribution>& all, const std::string& name)
{
    const bool there = std::any_of(all.begin(), all.end(), [&name](const Distribution& d) { return d.name == name; });
    if (!there) {
        all.push_back({name, {}, 0, false});
    }
}

} // namespace

Answer ask(Console& console, const std::vector<std::string>& arguments)
{
    try {
        const orb::process::detail::RunResult result = console.run(arguments, plainTexts());
        return {arguments, result.status, readable(beginning(result.standardOutput)),
                readable(beginning(result.standardError))};
    } catch (const std::exception& error) {
        return {arguments, std::nullopt, {}, readable(error.what())};
    }
}

DockerEngine askEngine(Console& console, const std::string& client)
{
    DockerEngine engine;
    engine.answer = ask(console, {client, "version", "--format", "{{json .}}"});
    const json::value versions = parsedJson(engine.answer.output);
    engine.clientVersion = textAt(versions, "Client", "Version");
    engine.version = textAt(versions, "Server", "Version");
    engine.system = textAt(versions, "Server", "Os");
    engine.reachable = engine.answer.good();
    return engine;
}

ContainerState askContainer(Console& console, const std::string& client, const std::string& container)
{
    const Answer state = ask(console, {client, "container", "inspect", "--format", "{{.State.Status}}", container});
    if (state.good()) {
        return state.output.starts_with("running")  ? ContainerState::running
               : state.output.starts_with("paused") ? ContainerState::paused
                                                    : ContainerState::stopped;
    }
    return askEngine(console, client).reachable ? ContainerState::missing : ContainerState::unknown;
}

bool imageExists(Console& console, const std::string& client, const std::string& image)
{
    return ask(console, {client, "image", "inspect", "--format", "{{.Id}}", image}).good();
}

bool imageHasProgram(Console& console, const std::string& client, const std::string& image)
{
    const Answer counts =
        ask(console, {client, "image", "inspect", "--format", "{{len .Config.Cmd}} {{len .Config.Entrypoint}}", image});
    return !counts.output.starts_with("0 0");
}

std::vector<Distribution> distributionTable(std::string_view text)
{
    std::vector<Distribution> all;
    for (const std::string& line : displayLines(text)) {
        if (const std::optional<Distribution> row = distributionRow(line)) {
            all.push_back(*row);
        }
    }
    return all;
}

std::vector<std::string> distributionQuestion(const std::string& wslPath)
{
    return {wslPath, "--list", "--all", "--verbose"};
}

std::vector<Distribution> distributionsIn(std::string_view names, std::string_view table)
{
    std::vector<Distribution> all = distributionTable(table);
    for (const std::string& name : rules::words(names)) {
        addMissing(all, name);
    }
    return all;
}

DistributionList askDistributions(Console& console, const std::string& wslPath)
{
    DistributionList list;
    list.answer = ask(console, rules::commands::wslList(wslPath));
    list.known = list.answer.good();
    if (list.known) {
        const Answer table = ask(console, distributionQuestion(wslPath));
        list.all = distributionsIn(list.answer.output, table.good() ? table.output : std::string());
    }
    return list;
}

bool isBusy(const Distribution& distribution)
{
    constexpr std::array<std::string_view, 4> states = {"Installing", "Uninstalling", "Converting", "Exporting"};
    return std::find(states.begin(), states.end(), distribution.state) != states.end();
}

std::string versionNumber(std::string_view text)
{
    const auto isPart = [](char c) { return (c >= '0' && c <= '9') || c == '.'; };
    for (auto start = text.begin(); start != text.end();) {
        start = std::find_if(start, text.end(), isPart);
        const auto end = std::find_if_not(start, text.end(), isPart);
        std::string number(start, end);
        const bool ends = !number.empty() && number.front() != '.' && number.back() != '.';
        if (ends && std::count(number.begin(), number.end(), '.') >= 2) {
            return number;
        }
        start = end;
    }
    return {};
}

} // namespace kelpctl
