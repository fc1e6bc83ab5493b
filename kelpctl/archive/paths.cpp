#include "archive/paths.h"

#include <algorithm>

namespace kelpctl {

std::vector<std::string> partsOf(std::string_view path)
{
    std::vector<std::string> parts;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = path.substr(start, end - start);
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        start = end + 1;
    }
    return parts;
}

PathInside pathInside(std::string_view written)
{
    PathInside result;
    std::vector<std::string> kept;
    for (const std::string& part : partsOf(written)) {
        if (part != "..") {
            kept.push_back(part);
            continue;
        }
        result.upward = true;
        result.outside = result.outside || kept.empty();
        if (!kept.empty()) {
            kept.pop_back();
        }
    }
    for (const std::string& part : kept) {
        result.path += (result.path.empty() ? "" : "/") + part;
    }
    return result;
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

bool isDigest(std::string_view text)
{
    constexpr std::size_t digits = 64;
    return text.size() == digits && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

} // namespace kelpctl
