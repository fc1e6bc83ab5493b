#include "environment.h"

#include "modes.h"
#include "paths.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unistd.h>

namespace stand_in {
namespace {

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        parts.push_back(text.substr(0, text.find(separator)));
        text.remove_prefix(std::min(parts.back().size() + 1, text.size()));
    }
    return parts;
}

// Elements that are no absolute Windows paths are dropped; with none left there is no value at all.
std::optional<std::string> translatedList(std::string_view list)
{
    std::optional<std::string> result;
    for (const std::string_view element : split(list, ';')) {
        if (isWindowsPath(element)) {
            result = (result ? *result + ":" : "") + mountedPath(element);
        }
    }
    return result;
}

// One entry, "NAME[/flags]". Blanks behind it do not count, blanks in front are part of the name.
void addEntry(Variables& variables, std::string_view entry)
{
    const std::size_t end = entry.find_last_not_of(' ');
    entry = entry.substr(0, end == std::string_view::npos ? 0 : end + 1);
    const std::size_t slash = std::min(entry.find('/'), entry.size());
    const std::string name(entry.substr(0, slash));
    const std::string_view flags = slash == entry.size() ? std::string_view{} : entry.substr(slash + 1);
    const auto has = [&](char flag) { return flags.find(flag) != std::string_view::npos; };
    const bool onlyToWindows = has('w') && !has('u');
    if (name.empty() || flags.find_first_not_of("uwpl") != std::string_view::npos || onlyToWindows) {
        return;
    }
    const std::string value = environmentOr(name.c_str(), "");
    if (value.empty() || (!has('p') && !has('l'))) {
        variables.emplace_back(name, value);
    } else if (const std::optional<std::string> translated = translatedList(value)) {
        variables.emplace_back(name, *translated);
    }
}

void set(Variables& variables, const std::string& name, std::string value)
{
    std::erase_if(variables, [&](const auto& each) { return each.first == name; });
    variables.emplace_back(name, std::move(value));
}

std::string machineName()
{
    std::array<char, 256> name{};
    ::gethostname(name.data(), name.size() - 1);
    return name.data();
}

} // namespace

Variables variablesOfWslenv(std::string_view wslenv)
{
    Variables variables;
    for (const std::string_view entry : split(wslenv, ':')) {
        addEntry(variables, entry);
    }
    return variables;
}

Variables linuxEnvironment(const User& user, std::string_view distribution)
{
    const std::string wslenv = environmentOr("WSLENV", "");
    Variables variables = {{"PATH", "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"}};
    for (auto& [name, value] : variablesOfWslenv(wslenv)) {
        set(variables, name, std::move(value));
    }
    set(variables, "HOME", user.home);
    set(variables, "USER", user.name);
    set(variables, "LOGNAME", user.name);
    set(variables, "SHELL", user.shell);
    set(variables, "NAME", machineName());
    set(variables, "WSL_DISTRO_NAME", std::string(distribution));
    set(variables, "WSLENV", wslenv);
    return variables;
}

} // namespace stand_in
