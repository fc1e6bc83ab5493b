#include "commands/completion.h"

#include "commands/command_shapes.h"

#include <algorithm>
#include <iterator>

namespace kelpctl {
namespace {

// Where kelpctl has no candidates, bash offers files.
constexpr char bashScript[] = R"(_kelpctl() {
    local IFS=$'\n'
    COMPREPLY=($("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
}
complete -o default -F _kelpctl kelpctl kelpctl.exe)";

// PowerShell does not pass on an empty argument, so a new word is told by a flag.
constexpr char powershellScript[] =
    R"(Register-ArgumentCompleter -Native -CommandName kelpctl, kelpctl.exe -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)
    $elements = @($commandAst.CommandElements | Where-Object { $_.Extent.StartOffset -lt $cursorPosition })
    $words = @($elements | Select-Object -Skip 1 | ForEach-Object { $_.ToString() })
    $kelpctl = $elements[0].ToString()
    $candidates = if ($wordToComplete) { & $kelpctl complete -- @words } else { & $kelpctl complete --next -- @words }
    $candidates | ForEach-Object {
        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
    }
})";

const Flag* findFlag(const std::vector<Flag>& flags, const std::string& name)
{
    const auto found =
        std::find_if(flags.begin(), flags.end(), [&name](const Flag& flag) { return flag.name == name; });
    return found == flags.end() ? nullptr : &*found;
}

// The command among the words, and the flags that may stand with it.
struct Place {
    std::string command;
    std::vector<Flag> flags;
    std::vector<std::string> words;
};

Place placeOf(const std::vector<std::string>& words)
{
    const std::vector<CommandShape> shapes = commandShapes();
    Place place{{}, shapes.front().flags, {}};
    for (const CommandShape& shape : shapes) {
        if (shape.name.empty()) {
            continue;
        }
        place.words.push_back(shape.name);
    }
    for (std::size_t index = 0; index + 1 < words.size(); ++index) {
        const auto shape = std::find_if(std::next(shapes.begin()), shapes.end(),
                                        [&](const CommandShape& known) { return known.name == words[index]; });
        const Flag* before = index == 0 ? nullptr : findFlag(place.flags, words[index - 1]);
        const bool isValue = before != nullptr && before->takesValue;
        if (place.command.empty() && !isValue && shape != shapes.end()) {
            place.command = shape->name;
            place.words = shape->words;
            place.flags.insert(place.flags.end(), shape->flags.begin(), shape->flags.end());
        }
    }
    return place;
}

std::vector<std::string> thoseThatBegin(std::vector<std::string> candidates, const std::string& start)
{
    std::erase_if(candidates, [&start](const std::string& candidate) { return !candidate.starts_with(start); });
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
}

} // namespace

std::string completionScript(const std::string& shell)
{
    return shell == "bash" ? bashScript : powershellScript;
}

std::vector<std::string> completions(const std::vector<std::string>& words)
{
    if (words.empty() || std::find(words.begin(), std::prev(words.end()), "--") != std::prev(words.end())) {
        return {};
    }
    const std::string& last = words.back();
    const Place place = placeOf(words);
    const Flag* before = words.size() < 2 ? nullptr : findFlag(place.flags, words[words.size() - 2]);
    if (before != nullptr && before->takesValue) {
        return thoseThatBegin(before->values, last);
    }
    if (!last.starts_with("-")) {
        return thoseThatBegin(place.words, last);
    }
    std::vector<std::string> names;
    for (const Flag& flag : place.flags) {
        names.push_back(flag.name);
    }
    return thoseThatBegin(names, last);
}

} // namespace kelpctl
