// The host product's own configuration: one value, set by the program before it uses anything else.
#pragma once

#include "host/export.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace foundation::core::config {

// A value, whose copies have nothing in common.
class KORVANE_HOST_API Configuration {
public:
    Configuration();
    ~Configuration();
    Configuration(const Configuration& other);
    Configuration& operator=(const Configuration& other);

    // UTF-8. Unset: the environment variable KORVANE_ROOT, or else the tree that this library is installed in.
    void setInstallationRoot(std::optional<std::string> root);
    const std::optional<std::string>& installationRoot() const noexcept;

    // UTF-8. Unset: the environment variable KORVANE_RELEASE, or else no release. An empty text counts as unset.
    void setRelease(std::optional<std::string> release);
    const std::optional<std::string>& release() const noexcept;

    // UTF-8, native form. What temp_directory_name() of files.h gives, and so where WSL keeps the distributions that are
    // imported from then on: the folder must exist, and stay. Unset, or an empty text: the user's own temporary directory.
    void setTemporaryFolder(std::optional<std::string> folder);
    const std::optional<std::string>& temporaryFolder() const noexcept;

    // Channel name to enablement mask; see diagnostics.h. Takes effect at once, also for loggers that exist.
    void setChannelMasks(std::map<std::string, std::uint32_t> masks);
    // The mask of one channel; the others stay.
    void setChannelMask(const std::string& channel, std::uint32_t mask);
    const std::map<std::string, std::uint32_t>& channelMasks() const noexcept;

    // Language of the messages: a lower-case ISO 639 code such as "de". Empty, as at first: English.
    void setLanguage(std::string language);
    const std::string& language() const noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

// Replaces the configuration. Any thread; what has been read from the earlier one stays valid.
KORVANE_HOST_API void configure(const Configuration& configuration);

// A copy of the configuration as it is now. Any thread.
KORVANE_HOST_API Configuration configuration();

} // namespace foundation::core::config
