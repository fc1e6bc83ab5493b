// An archive of files that everybody can open.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

struct ZipEntry {
    // UTF-8, with forward slashes.
    std::string name;
    std::string content;
};

// The entries one behind the other as they are, not packed: what is in there can be searched as it stands. Each, and all
// together, are shorter than 4 GiB, and there are less than 65536. They have no times.
std::string zipOf(const std::vector<ZipEntry>& entries);

// The checksum that zip and gzip have.
std::uint32_t crc32(std::string_view bytes);

} // namespace kelpctl
