#include "text.h"

#include <algorithm>
#include <ostream>

namespace orb::lvm::detail {

bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view trim(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::vector<std::string> trimmedLines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (const std::string_view line = trim(text.substr(0, end)); !line.empty()) {
            lines.emplace_back(line);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> result;
    auto position = text.begin();
    for (;;) {
        position = std::find_if_not(position, text.end(), isBlank);
        if (position == text.end()) {
            return result;
        }
        const auto end = std::find_if(position, text.end(), isBlank);
        result.emplace_back(position, end);
        position = end;
    }
}

bool contains(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::ostream& operator<<(std::ostream& stream, const Bracketed& list)
{
    const char* opening = "[";
    for (const std::string& element : list.elements) {
        stream << opening << element << ']';
        opening = " [";
    }
    return stream;
}

} // namespace orb::lvm::detail
