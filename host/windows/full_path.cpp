#include "full_path.h"

#include "system_error.h"

#include <windows.h>

namespace foundation::core::path {

std::wstring fullPath(const std::wstring& path)
{
    std::wstring full(MAX_PATH, L'\0');
    DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length >= full.size()) {
        full.resize(length);
        length = GetFullPathNameW(path.c_str(), length, full.data(), nullptr);
    }
    if (length == 0 || length >= full.size()) {
        throw system::lastError("cannot make a path absolute");
    }
    full.resize(length);
    return full;
}

} // namespace foundation::core::path
