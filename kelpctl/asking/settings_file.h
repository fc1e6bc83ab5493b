// Small files in which users tell programs what to do.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kelpctl {

// The whole of it, at most 1 MiB. Nothing when there is no such file, when it is longer, or cannot be read. Throws nothing.
std::optional<std::string> settingsFile(const std::filesystem::path& file);

} // namespace kelpctl
