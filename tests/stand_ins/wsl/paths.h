#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace stand_in {

// The file that a caller's path names on this machine. Under the bridge WSL_STAND_IN_PATHS tells, in lines of a Windows
// path, a tab and the Unix path; without it paths are Unix paths.
std::filesystem::path hostPath(std::string_view path);

bool isWindowsPath(std::string_view path);

// Where an absolute Windows path appears inside a distribution: "/mnt/c/..." for "C:\...".
std::string mountedPath(std::string_view windowsPath);

} // namespace stand_in
