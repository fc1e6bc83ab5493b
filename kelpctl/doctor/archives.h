// Archives that provisioning would look for.
#pragma once

#include "lvm/rules.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

enum class ArchiveKind { missing, empty, tar, gzip, xz, bzip2, zstd, zip, text, unknown, notAFile, notReadable };

struct Archive {
    std::string name;
    ArchiveKind kind = ArchiveKind::missing;
    // As the library tells it: a file that cannot be looked at does not exist.
    bool present = false;
    std::uintmax_t size = 0;
    // `setup` takes this one when it needs an archive.
    bool taken = false;
};

// As many of the first bytes as kindOf() needs.
inline constexpr std::size_t headSize = 512;

// The kind of a file, by its first bytes: headSize of them, or all that there are.
ArchiveKind kindOf(std::string_view head);

// "gzip", "not a file"; the same word in the table and for programs.
const char* kindName(ArchiveKind kind);

// The file of that name, looked at without its being changed.
Archive lookAt(const std::filesystem::path& folder, const std::string& name);

// A name as the library keeps it, in UTF-8.
std::string archiveName(const char16_t* name);

// The four archives in the order in which they are looked for; `names` decides which one is taken.
std::vector<Archive> lookAtArchives(const std::filesystem::path& folder,
                                    const orb::lvm::detail::DefaultArchives& names);

} // namespace kelpctl
