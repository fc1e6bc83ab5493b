#include "descriptor.h"

#include <cerrno>

#include <unistd.h>

namespace orb::process::detail {

void Descriptor::close() noexcept
{
    if (value_ >= 0) {
        const int error = errno;
        ::close(std::exchange(value_, -1));
        errno = error;
    }
}

} // namespace orb::process::detail
