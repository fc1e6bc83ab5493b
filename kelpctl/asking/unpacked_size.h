// How large an archive is unpacked.
#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>

namespace kelpctl {

// By the archive's first and last bytes. Known of a plain tar archive, and of one that gzip has packed, unless it may be
// another size as well: gzip keeps it but for multiples of 4 GiB, and of the last part only when the file has several.
// Nothing for any other kind, and for what cannot be read.
std::optional<std::uint64_t> unpackedSize(const std::filesystem::path& archive);
// The same of a stream that holds so many bytes, from its beginning. Where it stands afterwards is not said.
std::optional<std::uint64_t> unpackedSizeIn(std::istream& archive, std::uint64_t bytes);

// What gzip's last four bytes mean for so many packed bytes. Nothing when they say less than these, and when 4 GiB more
// would be no more than eight times as much, which is as well as root file systems can be packed.
std::optional<std::uint64_t> unpackedByGzip(std::uint64_t packed, std::uint32_t kept);

} // namespace kelpctl
