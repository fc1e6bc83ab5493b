// The system's error as an exception.
#pragma once

#include <string>
#include <system_error>

#include <windows.h>

namespace orb::process::detail {

// To be called before anything else can change the last error.
inline std::system_error lastError(const char* what)
{
    const DWORD error = GetLastError();
    return {static_cast<int>(error), std::system_category(), what};
}

} // namespace orb::process::detail
