// The enablement masks of all channels.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace foundation::core::diag {

// One mask word per channel, at an address that stays the same for the life of the table. Any thread.
class ChannelMasks {
public:
    // The mask word of `channel`, made on first use. A channel without a configured mask takes that of `parent`, or of
    // the nearest configured ancestor in the name's tree when `parent` is empty.
    const std::atomic<std::uint32_t>* word(const std::string& channel, const std::string& parent);

    // Replaces the configured masks, in the words that exist too.
    void configure(const std::map<std::string, std::uint32_t>& masks);

private:
    struct Word {
        std::string parent;
        std::atomic<std::uint32_t> mask{0};
    };

    std::uint32_t maskOf(const std::string& channel, const std::string& parent) const;

    std::mutex mutex_;
    std::map<std::string, std::uint32_t> configured_;
    std::map<std::string, Word> words_;
};

// The process's table. It lives as long as this library or any logger that holds it, whichever goes last when the process
// ends. Whoever comes later still gets a table of its own, with no channel configured.
std::shared_ptr<ChannelMasks> channelMasks();

} // namespace foundation::core::diag
