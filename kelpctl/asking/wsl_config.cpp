#include "asking/wsl_config.h"

#include "asking/settings_file.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "host/files.h"
#include "host/text.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>

namespace kelpctl {
namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

// Paths are written with each "\" doubled; a value may stand in quotation marks.
std::string valueOf(std::string_view written)
{
    std::string value;
    for (std::size_t index = 0; index < written.size(); ++index) {
        const bool escapes = written[index] == '\\' && index + 1 < written.size() && written[index + 1] == '\\';
        index += escapes ? 1 : 0;
        if (written[index] != '"') {
            value += written[index];
        }
    }
    return value;
}

// As Microsoft's page "Advanced settings configuration in WSL" lists them; kernelCommandLine is left out, since anything
// may stand there.
constexpr std::array<std::string_view, 28> knownKeys = {
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

void take(WslConfig& config, const std::string& section, std::string_view line)
{
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string name = section + "." + lowered(std::string(trimmed(line.substr(0, equals))));
    const std::string value = valueOf(trimmed(line.substr(std::min(equals + 1, line.size()))));
    if (name == "wsl2.kernel") {
        config.kernel = value;
    } else if (name == "wsl2.networkingmode" || name == "experimental.networkingmode") {
        config.networkingMode = value;
    }
    if (equals < line.size() && std::find(knownKeys.begin(), knownKeys.end(), name) != knownKeys.end()) {
        config.known.emplace_back(name, value);
    } else {
        ++config.unknown;
    }
}

// Nothing for what cannot be looked at.
std::optional<bool> isThere(const std::string& file)
{
    try {
        return foundation::core::path::exists(foundation::core::text::cvt_utf8_ustring(file));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

WslConfig wslConfigIn(std::string_view text)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    text.remove_prefix(text.starts_with(mark) ? mark.size() : 0);
    WslConfig config;
    std::string section;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, std::min(end, text.substr(0, end).find('#'))));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('[')) {
            section = lowered(std::string(trimmed(line.substr(1, line.find(']') - 1))));
        } else if (!line.empty()) {
            take(config, section, line);
        }
    }
    return config;
}

WslConfigFile wslConfigFile()
{
    const std::filesystem::path path = userFolder() / ".wslconfig";
    WslConfigFile file;
    file.path = foundation::core::text::cvt_ustring_utf8(path.u16string());
    const std::optional<std::string> text = settingsFile(path);
    file.exists = text.has_value();
    // It may have been saved in UTF-16.
    file.config = wslConfigIn(foundation::core::text::readable(text.value_or("")));
    if (!file.config.kernel.empty()) {
        file.kernelExists = isThere(file.config.kernel);
    }
    return file;
}

} // namespace kelpctl
