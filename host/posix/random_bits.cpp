#include "random_bits.h"

#include <sys/random.h>

#include <cerrno>
#include <system_error>

namespace foundation::core::path {

RandomBits randomBits()
{
    RandomBits bits{};
    if (getrandom(bits.data(), bits.size(), 0) != static_cast<ssize_t>(bits.size())) {
        throw std::system_error(errno, std::system_category(), "getrandom");
    }
    return bits;
}

} // namespace foundation::core::path
