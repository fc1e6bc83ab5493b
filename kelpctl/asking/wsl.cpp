#include "asking/wsl.h"

#include "terminal/text.h"

#include "lvm/commands.h"
#include "lvm/text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

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

DistributionList askDistributions(const Programs& programs, const std::string& wslPath)
{
    return askStates(programs, ask(programs, rules::commands::wslList(wslPath)));
}

DistributionList askStates(const Programs& programs, const Run& answer)
{
    DistributionList list{{}, answer, {}};
    if (list.known()) {
        list.table = ask(programs, {answer.arguments.front(), "--list", "--all", "--verbose"});
        list.all = distributionTable(list.table.succeeded() ? list.table.output : std::string());
        for (const std::string& name : rules::words(answer.output)) {
            addMissing(list.all, name);
        }
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
