// Removal whose failure is found out. The library only logs it.
#pragma once

#include <string>

namespace kelpctl {

// Removes a distribution or an image, the default one for an empty name. Throws Failure when that failed.
void removeImage(const std::string& name);

// The same through the host's gateway, for the default one.
void removeThroughGateway();

} // namespace kelpctl
