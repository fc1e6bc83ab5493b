// Paths inside an archive.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

struct PathInside {
    // Without "." and "..", and without a slash at either end; empty for the root itself.
    std::string path;
    // A ".." was in it, and one led out of the root.
    bool upward = false;
    bool outside = false;
};

PathInside pathInside(std::string_view written);

// The parts between the slashes, without empty ones and ".".
std::vector<std::string> partsOf(std::string_view path);

// "usr/bin" of "usr/bin/env".
std::string folderOf(const std::string& path);

// Whether it is so many digits of a hexadecimal number in lower case, as the names of what Docker saves are.
bool isDigest(std::string_view text);

} // namespace kelpctl
