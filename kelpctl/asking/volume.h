// Where an environment comes to lie, and how much room there is.
#pragma once

#include "asking/run.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kelpctl {

struct Volume {
    // A folder on it, UTF-8; empty when it is not known.
    std::string folder;
    std::optional<std::uintmax_t> freeBytes = {};
};

// Throws nothing.
Volume volumeOf(const std::filesystem::path& folder);

// The temporary folder, whether it exists or not. Throws std::filesystem::filesystem_error when nothing names one.
std::filesystem::path temporaryPath();

// Of the temporary folder, where WSL keeps distributions. Throws nothing.
Volume temporaryVolume();

// Where the Docker engine keeps its images, as it tells itself; for Docker Desktop the folder of the user's where it
// keeps its disk unless told otherwise. Not known when there is no such folder on this computer.
Volume engineVolume(const Programs& programs, const std::string& client);

} // namespace kelpctl
