#pragma once

#include <filesystem>
#include <string>

namespace stand_in {

// Unpacks an archive, whatever its name: tar, plain or packed by gzip, xz or bzip2. Returns the unpacker's complaint,
// empty when all went well.
std::string unpack(const std::filesystem::path& archive, const std::filesystem::path& folder);

} // namespace stand_in
