#include "asking/unpacked_size.h"

#include <array>
#include <fstream>
#include <string_view>
#include <system_error>

namespace kelpctl {
namespace {

using namespace std::string_view_literals;

// Of the file's bytes from there on; less when the file has less.
template <std::size_t Size>
std::string_view read(std::istream& file, std::streamoff position, std::array<char, Size>& bytes)
{
    file.clear();
    file.seekg(position);
    file.read(bytes.data(), static_cast<std::streamsize>(Size));
    return {bytes.data(), static_cast<std::size_t>(file.gcount())};
}

std::uint32_t littleEndian(std::string_view bytes)
{
    std::uint32_t number = 0;
    for (std::size_t index = bytes.size(); index > 0; --index) {
        number = number << 8 | static_cast<unsigned char>(bytes[index - 1]);
    }
    return number;
}

} // namespace

std::optional<std::uint64_t> unpackedByGzip(std::uint64_t packed, std::uint32_t kept)
{
    constexpr std::uint64_t wrap = std::uint64_t{1} << 32;
    constexpr std::uint64_t bestPacking = 8;
    const bool larger = kept + wrap <= packed * bestPacking;
    return kept >= packed && !larger ? std::optional<std::uint64_t>(kept) : std::nullopt;
}

std::optional<std::uint64_t> unpackedSizeIn(std::istream& archive, std::uint64_t bytes)
{
    constexpr std::streamoff tarMark = 257;
    constexpr std::size_t gzipEnd = 4;
    std::array<char, 5> mark{};
    if (bytes >= gzipEnd && read(archive, 0, mark).starts_with("\x1f\x8b"sv)) {
        std::array<char, gzipEnd> end{};
        return unpackedByGzip(bytes, littleEndian(read(archive, static_cast<std::streamoff>(bytes - gzipEnd), end)));
    }
    return read(archive, tarMark, mark) == "ustar"sv ? std::optional(bytes) : std::nullopt;
}

std::optional<std::uint64_t> unpackedSize(const std::filesystem::path& archive)
{
    std::error_code error;
    // A pipe or a device is not opened: reading it could take for ever.
    if (!std::filesystem::is_regular_file(archive, error)) {
        return std::nullopt;
    }
    const std::uintmax_t size = std::filesystem::file_size(archive, error);
    std::ifstream file(archive, std::ios::binary);
    return error ? std::nullopt : unpackedSizeIn(file, size);
}

} // namespace kelpctl
