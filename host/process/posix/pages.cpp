#include "pages.h"

#include <new>

#include <sys/mman.h>

namespace orb::process::detail {

Pages::Pages(std::size_t size)
{
    void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) { // NOLINT(performance-no-int-to-ptr): the system's own constant
        throw std::bad_alloc();
    }
    bytes_ = {static_cast<char*>(memory), size};
}

Pages::~Pages()
{
    if (!bytes_.empty()) {
        ::munmap(bytes_.data(), bytes_.size());
    }
}

} // namespace orb::process::detail
