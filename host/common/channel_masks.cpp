#include "channel_masks.h"

namespace foundation::core::diag {
namespace {

// "orb:lvm:wsl" lies under "orb:lvm"; a name without ":" lies under the root "".
std::string parentOf(const std::string& channel)
{
    const std::size_t separator = channel.rfind(':');
    return separator == std::string::npos ? std::string() : channel.substr(0, separator);
}

std::atomic<bool> tableIsGone{false};

struct TableHolder {
    std::shared_ptr<ChannelMasks> table = std::make_shared<ChannelMasks>();

    TableHolder() = default;
    TableHolder(const TableHolder&) = delete;
    TableHolder& operator=(const TableHolder&) = delete;
    ~TableHolder() { tableIsGone = true; }
};

} // namespace

std::shared_ptr<ChannelMasks> channelMasks()
{
    if (tableIsGone) {
        return std::make_shared<ChannelMasks>();
    }
    static const TableHolder holder;
    return holder.table;
}

const std::atomic<std::uint32_t>* ChannelMasks::word(const std::string& channel, const std::string& parent)
{
    const std::lock_guard lock(mutex_);
    const auto [entry, isNew] = words_.try_emplace(channel);
    Word& word = entry->second;
    if (isNew) {
        word.parent = parent.empty() ? parentOf(channel) : parent;
        word.mask = maskOf(channel, word.parent);
    }
    return &word.mask;
}

void ChannelMasks::configure(const std::map<std::string, std::uint32_t>& masks)
{
    const std::lock_guard lock(mutex_);
    configured_ = masks;
    for (auto& [channel, word] : words_) {
        word.mask.store(maskOf(channel, word.parent), std::memory_order_relaxed);
    }
}

std::uint32_t ChannelMasks::maskOf(const std::string& channel, const std::string& parent) const
{
    if (const auto own = configured_.find(channel); own != configured_.end()) {
        return own->second;
    }
    for (std::string ancestor = parent;; ancestor = parentOf(ancestor)) {
        if (const auto inherited = configured_.find(ancestor); inherited != configured_.end()) {
            return inherited->second;
        }
        if (ancestor.empty()) {
            return 0;
        }
    }
}

} // namespace foundation::core::diag
