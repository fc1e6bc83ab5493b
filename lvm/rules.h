// Rules that the library goes by, and that a host may have to explain to its users: each is written down here only. None
// keeps anything; who caches an answer does so itself.
#pragma once

#include "orb/lvm.h"

#include "host/network.h"

#include <string>

namespace orb::lvm::detail {

inline constexpr char backendVariable[] = "USE_WSL";
inline constexpr char registryVariable[] = "USE_DOCKER_REPOSITORY";

// Whether the value of a switch, null for a variable that is not set, turns it on.
bool isOne(const char* value);

// Whether this value of USE_WSL, null when it is not set, selects WSL; anything else selects Docker.
bool selectsWsl(const char* value);

// The archives that are looked for when none is named: the first, and without that the second, there or not.
struct DefaultArchives {
    const char16_t* preferred;
    const char16_t* other;
};
inline constexpr DefaultArchives distroArchives = {packedDistroArchive, distroArchive};
inline constexpr DefaultArchives imageArchives = {packedImageArchive, imageArchive};
inline constexpr DefaultArchives rootFsArchives = {packedDistroArchive, imageArchive};

// The host's IPv4 address by this adapter, empty when the adapter is not WSL's.
std::string getWslAdapterAddress(const foundation::core::net::NetworkInterface& nic);

// What a path is as the Docker client: only a file is one. The host product ships programs of its own that never are.
enum class ClientKind { file, hostsOwn, missing, link, noFile };

// Looks in the order of the list above, and no further than it must. Throws std::filesystem::filesystem_error, or
// std::system_error for a path that is not well-formed.
ClientKind clientKindOf(const std::string& path);

} // namespace orb::lvm::detail
