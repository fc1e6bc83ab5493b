#include "pages.h"

#include <new>

#include <windows.h>

namespace orb::process::detail {

Pages::Pages(std::size_t size)
{
    void* const memory = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    bytes_ = {static_cast<char*>(memory), size};
}

Pages::~Pages()
{
    if (!bytes_.empty()) {
        VirtualFree(bytes_.data(), 0, MEM_RELEASE);
    }
}

} // namespace orb::process::detail
