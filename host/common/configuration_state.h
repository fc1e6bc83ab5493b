// What the services of this library share about the configuration.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace foundation::core::config {

// A copy of the text that stays valid until the process exits.
const char* keepRelease(const std::string& release);

} // namespace foundation::core::config

namespace foundation::core::diag {

// Sets the masks of all channels that exist, and of those that come later.
void applyMasks(const std::map<std::string, std::uint32_t>& masks);

} // namespace foundation::core::diag
