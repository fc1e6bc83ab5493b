// What can be seen from outside of work that other programs do. Chosen by CMake from windows/ and posix/.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace kelpctl {

// The size of a file that another program may be writing; nothing when there is none, or when it cannot be opened. It is
// opened for that, since what Windows tells of a file without it is old until its writer closes it.
std::optional<std::uint64_t> sizeOfOpened(const std::filesystem::path& file);

// How far that process has read in the file: on Linux where it stands in it, on Windows all that it has read of whatever,
// once that is a MiB. Nothing when there is no such process, when it may not be looked at, and on Linux when it does not
// have the file open.
std::optional<std::uint64_t> bytesReadBy(std::uint32_t processId, const std::filesystem::path& file);

} // namespace kelpctl
