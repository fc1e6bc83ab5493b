#include "pages.h"

#include <memory>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

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

void expectFilling(std::span<char> memory) noexcept
{
    // The advice is for whole pages.
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void* begin = memory.data();
    std::size_t size = memory.size();
    if (std::align(pageSize, pageSize, begin, size) != nullptr) {
        // A system that has no larger units goes on with the usual ones.
        ::madvise(begin, size - size % pageSize, MADV_HUGEPAGE);
    }
}

} // namespace orb::process::detail
