#include "commands/suggestions.h"

#include "commands/commands.h"

#include <algorithm>
#include <numeric>

namespace kelpctl {
namespace {

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

} // namespace

std::string noSuchCommand(const std::string& word)
{
    std::vector<std::string> names = namesOf(allCommands());
    names.insert(names.end(), {"--version", "--docker", "--wsl"});
    const std::string text = "There is no command \"" + word + "\".";
    // A flag's name without its hyphens is meant for the flag.
    return std::find(names.begin(), names.end(), "--" + word) != names.end()
               ? text + " Did you mean \"--" + word + "\"?"
               : withSuggestion(text, word, names);
}

std::string unexpected(const std::string& command, const std::string& word, const std::vector<std::string>& flags)
{
    if (word.starts_with("-")) {
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

} // namespace kelpctl
