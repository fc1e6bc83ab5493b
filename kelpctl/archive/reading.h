// Reads an archive: all of it as a stream, or its beginning.
#pragma once

#include "archive/facts.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <istream>
#include <optional>

namespace kelpctl {

struct Reading {
    // Ends after so many unpacked bytes, or so much time; reads all when nothing is said.
    std::optional<std::uintmax_t> unpackedBytes = {};
    std::optional<std::chrono::milliseconds> time = {};
    // Is told how much of the file was read; what it throws ends the reading.
    std::function<void(std::uintmax_t packedBytes)> watch = [](std::uintmax_t) {};
};

// Less than a second, whatever the size: enough to tell what the archive is.
Reading quickLook();

// Throws what `watch` throws; what is wrong with the file is a fact. Only a file that is one is opened.
ArchiveFacts readArchive(const std::filesystem::path& file, const Reading& reading = {});

// The same of a stream of that length, without what lies beside a file.
ArchiveFacts readArchive(std::istream& stream, std::uintmax_t fileBytes, const Reading& reading = {});

// What the first bytes tell, and the size.
ArchiveFacts lookAtFile(const std::filesystem::path& file);

} // namespace kelpctl
