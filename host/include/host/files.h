// The file-system service: what the standard library does not offer, or does not offer on every toolchain.
// Paths are UTF-16 in native form. Any thread.
#pragma once

#include "host/export.h"

#include <filesystem>
#include <string>

namespace foundation::core::path {

// The folder that the configuration names (setTemporaryFolder() of configuration.h), otherwise the user's temporary
// directory; without a separator at the end, but for that of a root. The one that is configured is not looked at.
// Throws std::filesystem::filesystem_error when the user has none, and std::system_error
// (errc::illegal_byte_sequence) when the configured one is not UTF-8.
KORVANE_HOST_API std::u16string temp_directory_name();

// A new path name inside `directory`: `prefix`, 128 random bits in hexadecimal, `suffix`. Nothing is created.
// Throws std::system_error when the system has no random bits to give.
KORVANE_HOST_API std::u16string tmpnam(const std::u16string& directory, const std::u16string& prefix,
                                       const std::u16string& suffix);

// The tests of a path. One that leads nowhere is an answer, and so are on Windows a server that cannot be found and a
// name that no path can have. Whatever else keeps the system from looking is a std::filesystem::filesystem_error, named
// as below, whose path is the one given. Paths may be of any length.

// Whether the path leads to something that exists, links followed. Its error is named "exists".
KORVANE_HOST_API bool exists(const std::filesystem::path& path);

// Whether the path itself is a symbolic link or, on Windows, any other reparse point that stands for another path
// (such as a junction). Links are not followed. Its error is named "symlink_status".
KORVANE_HOST_API bool is_link(const std::filesystem::path& path);

// Whether the path leads to a regular file, links followed. Its error is named "status".
KORVANE_HOST_API bool is_regular_file(const std::filesystem::path& path);

} // namespace foundation::core::path
