// The file-system service: what the standard library does not offer, or does not offer on every toolchain.
// Paths are UTF-16 in native form. Any thread.
#pragma once

#include "host/export.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace foundation::core::path {

// The user's temporary directory, without a separator at the end.
// Throws std::filesystem::filesystem_error when there is none.
KORVANE_HOST_API std::u16string temp_directory_name();

// A new path name inside `directory`: `prefix`, 128 random bits in hexadecimal, `suffix`. Nothing is created.
// Throws std::system_error when the system has no random bits to give.
KORVANE_HOST_API std::u16string tmpnam(const std::u16string& directory, const std::u16string& prefix,
                                       const std::u16string& suffix);

// Whether the path leads to something that exists, links followed. A path that cannot be looked at does not exist.
KORVANE_HOST_API bool exists(const std::u16string& path);

// Whether the path itself is a symbolic link or, on Windows, any other reparse point that stands for another path
// (such as a junction). Links are not followed. A path that does not exist is no link and no error; any other failure
// is reported in `error`.
KORVANE_HOST_API bool is_link(const std::filesystem::path& path, std::error_code& error);

} // namespace foundation::core::path
