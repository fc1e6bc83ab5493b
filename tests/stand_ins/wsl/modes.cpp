#include "modes.h"

#include <charconv>
#include <cstdlib>
#include <optional>

namespace stand_in {
namespace {

std::string currentVerb;

struct Entry {
    std::string_view name;
    std::string_view value;
};

// "NAME[=VALUE][@VERB]"; nothing when it is meant for another verb.
std::optional<Entry> parseEntry(std::string_view text)
{
    const std::size_t at = text.find('@');
    if (at != std::string_view::npos && text.substr(at + 1) != currentVerb) {
        return std::nullopt;
    }
    text = text.substr(0, at);
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        return Entry{text, {}};
    }
    return Entry{text.substr(0, equals), text.substr(equals + 1)};
}

std::optional<std::string> find(std::string_view mode)
{
    const std::string list = environmentOr("WSL_STAND_IN_MODE", "");
    for (std::string_view rest = list; !rest.empty();) {
        const std::size_t comma = rest.find(',');
        const std::optional<Entry> entry = parseEntry(rest.substr(0, comma));
        if (entry && entry->name == mode) {
            return std::string(entry->value);
        }
        rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    return std::nullopt;
}

} // namespace

std::string environmentOr(const char* name, std::string_view fallback)
{
    const char* value = std::getenv(name);
    return std::string(value == nullptr ? fallback : value);
}

long numberFromEnvironment(const char* name, long fallback)
{
    const std::string text = environmentOr(name, "");
    long number = fallback;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void setVerb(std::string_view verb)
{
    currentVerb = verb;
}

bool modeIsOn(std::string_view mode)
{
    return find(mode).has_value();
}

std::string modeValue(std::string_view mode)
{
    return find(mode).value_or("");
}

} // namespace stand_in
