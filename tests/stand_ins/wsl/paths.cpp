#include "paths.h"

#include "modes.h"

#include <algorithm>
#include <cctype>

namespace stand_in {
namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string lookUp(std::string_view table, std::string_view path)
{
    while (!table.empty()) {
        const std::string_view line = table.substr(0, table.find('\n'));
        const std::size_t tab = line.find('\t');
        if (tab != std::string_view::npos && line.substr(0, tab) == path) {
            return std::string(line.substr(tab + 1));
        }
        table.remove_prefix(std::min(line.size() + 1, table.size()));
    }
    return {};
}

} // namespace

bool isWindowsPath(std::string_view path)
{
    return path.size() >= 3 && isLetter(path[0]) && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
}

std::filesystem::path hostPath(std::string_view path)
{
    std::string result = lookUp(environmentOr("WSL_STAND_IN_PATHS", ""), path);
    if (result.empty()) {
        result = path;
    }
    std::filesystem::path absolute = std::filesystem::absolute(result).lexically_normal();
    return absolute.has_filename() ? absolute : absolute.parent_path();
}

std::string mountedPath(std::string_view windowsPath)
{
    std::string result = "/mnt/";
    result += static_cast<char>(std::tolower(static_cast<unsigned char>(windowsPath[0])));
    result += windowsPath.substr(2);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

} // namespace stand_in
