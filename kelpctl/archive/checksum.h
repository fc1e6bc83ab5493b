// The sum that may lie beside an archive, as sha256sum writes it: FILE.sha256.
#pragma once

#include "archive/facts.h"

#include <filesystem>
#include <optional>
#include <string>

namespace kelpctl {

// Nothing when there is no such file. Throws nothing.
std::optional<Checksum> checksumBeside(const std::filesystem::path& archive);

// The sum for the file of that name: that of its line, or else the only one. In lower case, empty when there is none.
std::string sumFor(const std::string& name, const std::string& text);

} // namespace kelpctl
