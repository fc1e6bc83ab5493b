// File tests that name the failing operation.
#pragma once

#include <filesystem>
#include <string>

namespace orb::lvm::detail {

// A file-system path from a narrow string in the native narrow encoding. Throws std::system_error when the string is
// not well-formed.
std::filesystem::path toPath(const std::string& narrow);

// Whether the path exists, links followed. Throws std::filesystem::filesystem_error named "exists" when that cannot be
// told.
bool pathExists(const std::filesystem::path& path);

// Whether the path itself is a link. The error is named "symlink_status".
bool isLink(const std::filesystem::path& path);

// Whether the path, links followed, is a regular file. The error is named "status".
bool isRegularFile(const std::filesystem::path& path);

} // namespace orb::lvm::detail
