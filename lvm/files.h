// Paths.
#pragma once

#include <filesystem>
#include <string>

namespace orb::lvm::detail {

// A file-system path from a narrow string in the native narrow encoding. Throws std::system_error when the string is
// not well-formed.
std::filesystem::path toPath(const std::string& narrow);

} // namespace orb::lvm::detail
