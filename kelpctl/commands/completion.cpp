#include "commands/completion.h"

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

const Option* findOption(const std::vector<Option>& options, const std::string& name)
{
    const auto found =
        std::find_if(options.begin(), options.end(), [&name](const Option& option) { return option.name == name; });
    return found == options.end() ? nullptr : &*found;
}

bool isFlag(const Option& option)
{
    return *option.name == '-';
}

// The command among the words, and the flags and words that may stand with it.
struct Position {
    bool hasCommand = false;
    std::vector<Option> flags;
    std::vector<std::string> words;
};

void enter(Position& position, const Command& command, std::span<const Command> commands)
{
    position.hasCommand = true;
    position.words.clear();
    for (const Option& option : command.options) {
        if (isFlag(option)) {
            position.flags.push_back(option);
        } else if (option.namesCommand) {
            position.words = listedNames(commands);
        } else {
            position.words.assign(option.words.begin(), option.words.end());
        }
    }
}

Position positionBehind(const std::vector<std::string>& words, std::span<const Command> commands,
                        std::span<const Option> globalOptions)
{
    Position position{false, {globalOptions.begin(), globalOptions.end()}, listedNames(commands)};
    position.flags.push_back({.name = "--help", .value = nullptr, .help = "", .take = nullptr});
    position.flags.push_back({.name = "-h", .value = nullptr, .help = "", .take = nullptr});
    for (std::size_t index = 0; index + 1 < words.size(); ++index) {
        const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command& each) {
            return each.shown == Shown::listed && each.name == words[index];
        });
        const Option* before = index == 0 ? nullptr : findOption(position.flags, words[index - 1]);
        const bool isValue = before != nullptr && before->value != nullptr;
        if (!position.hasCommand && !isValue && command != commands.end()) {
            enter(position, *command, commands);
        }
    }
    return position;
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

std::vector<std::string> completions(const std::vector<std::string>& words, std::span<const Command> commands,
                                     std::span<const Option> globalOptions)
{
    if (words.empty() || std::find(words.begin(), std::prev(words.end()), "--") != std::prev(words.end())) {
        return {};
    }
    const std::string& last = words.back();
    const Position position = positionBehind(words, commands, globalOptions);
    const Option* before = words.size() < 2 ? nullptr : findOption(position.flags, words[words.size() - 2]);
    if (before != nullptr && before->value != nullptr) {
        return thoseThatBegin({before->words.begin(), before->words.end()}, last);
    }
    if (!last.starts_with("-")) {
        return thoseThatBegin(position.words, last);
    }
    std::vector<std::string> names;
    for (const Option& flag : position.flags) {
        names.emplace_back(flag.name);
    }
    return thoseThatBegin(names, last);
}

} // namespace kelpctl
