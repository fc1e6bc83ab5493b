// The backend that the library uses.
#pragma once

#include "lvm/rules.h"

#include <optional>

namespace kelpctl {

enum class Backend { wsl, docker };

// What differs by the backend and is no more than a word. What is more is a switch: so the compiler names each place
// that another backend concerns.
struct BackendTraits {
    // For programs, and in titles.
    const char* name;
    const char* title;
    const char* flag;
    // The value of USE_WSL that selects it.
    const char* value;
    // What an environment is there.
    const char* image;
    orb::lvm::detail::DefaultArchives archives;
    // Whether programs run in containers, which a client of its own starts and stops.
    bool hasContainers;
};

const BackendTraits& traitsOf(Backend backend);

// Decides the backend for this process, before the library is asked for the first time. Nothing given: USE_WSL stays
// as it is.
void selectBackend(const std::optional<Backend>& backend);

// By the library's own rule.
Backend selectedBackend();

// Throws the library's DOCKER_NOT_AVAILABLE when Docker is used and its client is not found. Some of the library's
// functions would pass on the empty path instead.
void requireClient();

} // namespace kelpctl
