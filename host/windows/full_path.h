// Paths from where this process stands.
#pragma once

#include <string>

namespace foundation::core::path {

// The absolute form of a path; for a drive designator alone the drive's current folder. Throws std::system_error.
std::wstring fullPath(const std::wstring& path);

} // namespace foundation::core::path
