#include "capture.h"

namespace orb::process::detail {

namespace {

// Most programs print less than this.
constexpr std::size_t firstPieceSize = std::size_t{64} * 1024;
constexpr std::size_t laterPieceSize = std::size_t{1024} * 1024;

} // namespace

std::span<char> Capture::room()
{
    if (pieces_.empty()) {
        pieces_.emplace_back(firstPieceSize);
        filled_ = 0;
    } else if (filled_ == pieces_.back().bytes().size()) {
        pieces_.emplace_back(laterPieceSize);
        filled_ = 0;
    }
    return pieces_.back().bytes().subspan(filled_);
}

std::string_view Capture::added(std::size_t size)
{
    const std::string_view fresh(pieces_.back().bytes().data() + filled_, size);
    filled_ += size;
    return fresh;
}

std::string Capture::take()
{
    std::string all;
    if (pieces_.empty()) {
        return all;
    }
    std::size_t size = filled_;
    for (std::size_t i = 0; i + 1 < pieces_.size(); ++i) {
        size += pieces_[i].bytes().size();
    }
    all.reserve(size);
    for (Pages& piece : pieces_) {
        const Pages current = std::move(piece);
        all.append(current.bytes().data(), std::min(current.bytes().size(), size - all.size()));
    }
    pieces_.clear();
    return all;
}

} // namespace orb::process::detail
