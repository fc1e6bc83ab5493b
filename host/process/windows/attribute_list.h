// What a program is started with beyond the plain form.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include <windows.h>

namespace orb::process::detail {

// One of the system's PROC_THREAD_ATTRIBUTE_..., and its value.
struct Attribute {
    DWORD_PTR key;
    void* value;
    SIZE_T size;
};

// As many as there are. The values must outlive it.
class AttributeList {
public:
    // Throws std::system_error.
    explicit AttributeList(std::span<const Attribute> attributes);
    ~AttributeList();
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST get() noexcept
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    }

private:
    std::vector<std::byte> memory_;
};

} // namespace orb::process::detail
