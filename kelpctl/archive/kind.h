// What a file is, by its first bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace kelpctl {

enum class ArchiveKind { missing, empty, tar, gzip, xz, bzip2, zstd, zip, text, unknown, notAFile, notReadable };

// As many of the first bytes as kindOf() needs.
inline constexpr std::size_t headSize = 512;

// The kind of a file, by its first bytes: headSize of them, or all that there are.
ArchiveKind kindOf(std::string_view head);

// "gzip", "not a file"; the same word in the table and for programs.
const char* kindName(ArchiveKind kind);

// Whether it is a tar archive, as it is or packed in a way that can be unpacked here.
bool canBeUnpacked(ArchiveKind kind);

} // namespace kelpctl
