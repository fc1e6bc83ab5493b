// The archives that provisioning would look for.
#pragma once

#include "doctor/check.h"

#include "lvm/rules.h"

#include <filesystem>
#include <string>
#include <vector>

namespace kelpctl {

std::span<const Check> archiveChecks();

// The file of that name, looked at without its being changed.
Archive lookAt(const std::filesystem::path& folder, const std::string& name);

// The four archives in the order in which they are looked for; `names` decides which one is taken.
std::vector<Archive> lookAtArchives(const std::filesystem::path& folder,
                                    const orb::lvm::detail::DefaultArchives& names);

} // namespace kelpctl
