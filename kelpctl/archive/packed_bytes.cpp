#include "archive/packed_bytes.h"

#include <utility>

namespace kelpctl {
namespace {

// Large enough that the system reads ahead, and the calls cost nothing.
constexpr std::size_t blockSize = 256UL * 1024;

} // namespace

PackedBytes::PackedBytes(std::istream& stream, std::function<void(std::string_view)> watch)
    : stream_(stream), watch_(std::move(watch)), buffer_(blockSize, '\0')
{
}

std::string_view PackedBytes::next()
{
    stream_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    if (stream_.bad()) {
        throw Unreadable(Damage::broken, "the file cannot be read further");
    }
    const std::string_view block(buffer_.data(), static_cast<std::size_t>(stream_.gcount()));
    count_ += block.size();
    ended_ = ended_ || block.empty();
    if (!block.empty()) {
        watch_(block);
    }
    return block;
}

} // namespace kelpctl
