#include "capture.h"

#include <algorithm>

namespace orb::process::detail {

namespace {

constexpr std::size_t firstPieceSize = std::size_t{16} * 1024;
constexpr std::size_t laterPieceSize = std::size_t{1024} * 1024;

} // namespace

std::span<char> Capture::buffer()
{
    if (last_.empty()) {
        first_ = std::make_unique_for_overwrite<char[]>(firstPieceSize);
        last_ = {first_.get(), firstPieceSize};
        filled_ = 0;
    } else if (filled_ == last_.size()) {
        last_ = later_.emplace_back(laterPieceSize).bytes();
        filled_ = 0;
    }
    return last_.subspan(filled_);
}

std::string_view Capture::commit(std::size_t size)
{
    const std::string_view fresh(last_.data() + filled_, size);
    filled_ += size;
    return fresh;
}

std::string Capture::take()
{
    std::size_t size = filled_;
    if (!later_.empty()) {
        size += firstPieceSize;
        for (std::size_t i = 0; i + 1 < later_.size(); ++i) {
            size += later_[i].bytes().size();
        }
    }
    std::string all;
    all.reserve(size);
    if (size > 0) {
        all.append(first_.get(), std::min(firstPieceSize, size));
    }
    first_.reset();
    for (Pages& piece : later_) {
        const Pages current = std::move(piece);
        all.append(current.bytes().data(), std::min(current.bytes().size(), size - all.size()));
    }
    later_.clear();
    last_ = {};
    filled_ = 0;
    return all;
}

} // namespace orb::process::detail
