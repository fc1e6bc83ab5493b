// The backend that the library uses.
#pragma once

#include "request.h"

#include <optional>

namespace kelpctl {

// Decides the backend for this process, before the library is asked for the first time. Nothing given: USE_WSL stays
// as it is.
void selectBackend(const std::optional<Backend>& backend);

// By the library's own rule.
bool usesWsl();

// Throws the library's DOCKER_NOT_AVAILABLE when Docker is used and its client is not found. Some of the library's
// functions would pass on the empty path instead.
void requireClient();

} // namespace kelpctl
