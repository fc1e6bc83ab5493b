// A stand-in for where.exe: prints every match of each name, in the current folder first and then along PATH.
#include "where.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace where {
namespace {

std::vector<Text> split(const Text& list)
{
    std::vector<Text> parts(1);
    for (const Path::value_type c : list) {
        if (c == listSeparator()) {
            parts.emplace_back();
        } else if (c != '"') {
            parts.back() += c;
        }
    }
    std::erase_if(parts, [](const Text& each) { return each.empty(); });
    return parts;
}

std::vector<Path> searchedFolders()
{
    std::error_code ignored;
    std::vector<Path> folders = {std::filesystem::current_path(ignored)};
    for (const Text& entry : split(environment("PATH"))) {
        folders.push_back(std::filesystem::absolute(entry, ignored));
    }
    return folders;
}

bool isMatch(const Path& file)
{
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool printMatches(const Text& pattern)
{
    std::vector<Text> endings = optionalEndings();
    endings.insert(endings.begin(), Text{});
    bool found = false;
    for (const Path& folder : searchedFolders()) {
        for (const Text& ending : endings) {
            const Path file = folder / (pattern + ending);
            if (isMatch(file)) {
                printPath(file);
                found = true;
            }
        }
    }
    return found;
}

void recordCall(const std::vector<Text>& patterns)
{
    const Path file = callsFile();
    if (file.empty()) {
        return;
    }
    std::ofstream calls(file, std::ios::app | std::ios::binary);
    calls << "where";
    for (const Text& pattern : patterns) {
        calls << ' ' << Path(pattern).string();
    }
    calls << '\n';
}

} // namespace

int run(const std::vector<Text>& patterns)
{
    prepareOutput();
    recordCall(patterns);
    if (patterns.empty()) {
        std::fputs("ERROR: The syntax of the command is incorrect.\r\n", stderr);
        return 2;
    }
    bool allFound = true;
    for (const Text& pattern : patterns) {
        if (!printMatches(pattern)) {
            std::fputs("INFO: Could not find files for the given pattern(s).\r\n", stderr);
            allFound = false;
        }
    }
    return allFound ? 0 : 1;
}

} // namespace where

int main(int argc, char** argv)
{
    return where::run(where::patternsFrom(argc, argv));
}
