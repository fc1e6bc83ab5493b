// What may be done with a folder, found out without doing it. Chosen by CMake from windows/ and posix/.
#pragma once

#include <filesystem>

namespace kelpctl {

// Whether this user may make files and folders in it.
bool mayWriteInto(const std::filesystem::path& folder);

} // namespace kelpctl
