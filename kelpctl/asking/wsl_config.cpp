#include "asking/wsl_config.h"

#include "host/environment.h"
#include "host/text.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kelpctl {
namespace {

// As Microsoft's page "Advanced settings configuration in WSL" lists them; kernelCommandLine is left out, since anything
// may stand there.
constexpr std::array knownKeys = {
    "wsl2.autoproxy",
    "wsl2.debugconsole",
    "wsl2.defaultvhdsize",
    "wsl2.dnsproxy",
    "wsl2.dnstunneling",
    "wsl2.firewall",
    "wsl2.guiapplications",
    "wsl2.kernel",
    "wsl2.kernelmodules",
    "wsl2.localhostforwarding",
    "wsl2.maxcrashdumpcount",
    "wsl2.memory",
    "wsl2.nestedvirtualization",
    "wsl2.networkingmode",
    "wsl2.pagereporting",
    "wsl2.processors",
    "wsl2.safemode",
    "wsl2.swap",
    "wsl2.swapfile",
    "wsl2.vmidletimeout",
    "experimental.automemoryreclaim",
    "experimental.besteffortdnsparsing",
    "experimental.dnstunnelingipaddress",
    "experimental.hostaddressloopback",
    "experimental.ignoredports",
    "experimental.initialautoproxytimeout",
    "experimental.sparsevhd",
    "general.instanceidletimeout",
};

std::string trimmed(const std::string& text)
{
    constexpr char blanks[] = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string inLowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

bool isKnown(const std::string& name)
{
    return std::find(knownKeys.begin(), knownKeys.end(), name) != knownKeys.end();
}

} // namespace

WslConfig wslConfigOf(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    WslConfig config;
    std::istringstream lines{std::string(text)};
    std::string section;
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        const std::size_t equals = line.find('=');
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[') && line.ends_with(']')) {
            section = inLowerCase(trimmed(line.substr(1, line.size() - 2)));
            continue;
        }
        const std::string name = section + "." + inLowerCase(trimmed(line.substr(0, equals)));
        if (equals != std::string::npos && isKnown(name)) {
            config.known.emplace_back(name, trimmed(line.substr(equals + 1)));
        } else {
            ++config.unknown;
        }
    }
    return config;
}

std::optional<std::string> wslConfigText()
{
    using foundation::core::env::variable;
    const std::string home = variable("USERPROFILE").value_or(variable("HOME").value_or(""));
    if (home.empty()) {
        return std::nullopt;
    }
    const std::filesystem::path folder(foundation::core::text::cvt_utf8_ustring(home));
    std::ifstream file(folder / ".wslconfig", std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

} // namespace kelpctl
