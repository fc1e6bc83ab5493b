// Collects what comes out of one stream.
#pragma once

#include "pages.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orb::process::detail {

// Bytes are read straight into pieces of their own and become one string at the end. Each piece is freed as soon as it
// has been copied, so that even a very large output needs little more memory than its size.
class Capture {
public:
    // Where to read the next bytes to: never empty, and stays in place until take().
    std::span<char> buffer();

    // `size` bytes of the buffer have been filled. Gives them back.
    std::string_view commit(std::size_t size);

    // Everything committed so far, in order. The capture is empty afterwards.
    std::string take();

private:
    // Comes from the allocator, which has so little at hand; what most programs print fits in.
    std::unique_ptr<char[]> first_;
    std::vector<Pages> later_;
    // The piece that is being filled, and how much of it is filled. All others are full.
    std::span<char> last_;
    std::size_t filled_ = 0;
};

} // namespace orb::process::detail
