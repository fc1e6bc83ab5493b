// The archives that provisioning would look for.
#pragma once

#include "doctor/check.h"

#include "lvm/rules.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

std::span<const Check> archiveChecks();

// As many of the first bytes as kindOf() needs.
inline constexpr std::size_t headSize = 512;

// The kind of a file, by its first bytes: headSize of them, or all that there are.
ArchiveKind kindOf(std::string_view head);

// "gzip", "not a file"; the same word in the table and for programs.
const char* kindName(ArchiveKind kind);

// The file of that name, looked at without its being changed.
Archive lookAt(const std::filesystem::path& folder, const std::string& name);

// The four archives in the order in which they are looked for; `names` decides which one is taken.
std::vector<Archive> lookAtArchives(const std::filesystem::path& folder,
                                    const orb::lvm::detail::DefaultArchives& names);

} // namespace kelpctl
