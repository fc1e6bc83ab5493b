#include "asking/wsl_config.h"

#include "asking/settings_file.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "host/files.h"
#include "host/text.h"

#include <algorithm>
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

bool isOfTheMachine(const std::string& section)
{
    return section == "wsl2" || section == "experimental";
}

void take(WslConfig& config, std::string_view line)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        return;
    }
    const std::string key = lowered(std::string(trimmed(line.substr(0, equals))));
    const std::string value = valueOf(trimmed(line.substr(equals + 1)));
    if (key == "kernel") {
        config.kernel = value;
    } else if (key == "networkingmode") {
        config.networkingMode = value;
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
        } else if (isOfTheMachine(section)) {
            take(config, line);
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
