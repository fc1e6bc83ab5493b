// The host product's own configuration: one value, set by the program before it uses anything else.
#pragma once

#include "host/export.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace foundation::core::config {

struct Configuration {
    // UTF-8. Unset: the environment variable KORVANE_ROOT, or else the tree that this library is installed in.
    std::optional<std::string> installationRoot;
    // UTF-8. Unset: the environment variable KORVANE_RELEASE, or else no release. An empty text counts as unset.
    std::optional<std::string> release;
    // Channel name to enablement mask; see diagnostics.h. Takes effect at once, also for loggers that exist.
    std::map<std::string, std::uint32_t> channelMasks;
    // Language of the messages: a lower-case ISO 639 code such as "de". Empty: English.
    std::string language;
};

// Replaces the configuration. Any thread; what has been read from the earlier one stays valid.
KORVANE_HOST_API void configure(const Configuration& configuration);

// A copy of the configuration as it is now. Any thread.
KORVANE_HOST_API Configuration configuration();

} // namespace foundation::core::config
