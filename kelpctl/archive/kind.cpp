#include "archive/kind.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

using namespace std::string_view_literals;

struct Magic {
    std::string_view bytes;
    ArchiveKind kind;
};

constexpr std::array magics = {
    Magic{"\x1f\x8b"sv, ArchiveKind::gzip},
    Magic{"\xfd"
          "7zXZ\0"sv,
          ArchiveKind::xz},
    Magic{"BZh"sv, ArchiveKind::bzip2},
    Magic{"\x28\xb5\x2f\xfd"sv, ArchiveKind::zstd},
    Magic{"PK\x03\x04"sv, ArchiveKind::zip},
    Magic{"PK\x05\x06"sv, ArchiveKind::zip},
};

unsigned int valueOf(char byte)
{
    return static_cast<unsigned char>(byte);
}

// The header of a tar archive's first entry holds the sum of its own bytes, in octal; where the sum stands, blanks count.
// So archives of the oldest kind are known as well, which have no magic word.
bool startsTar(std::string_view head)
{
    constexpr std::size_t sumPosition = 148;
    constexpr std::size_t sumLength = 8;
    if (head.size() < headSize || head.front() == '\0') {
        return false;
    }
    unsigned int sum = 0;
    for (std::size_t index = 0; index < headSize; ++index) {
        const bool inSum = index >= sumPosition && index < sumPosition + sumLength;
        sum += inSum ? valueOf(' ') : valueOf(head[index]);
    }
    unsigned int stated = 0;
    for (const char digit : head.substr(sumPosition, sumLength)) {
        if (digit >= '0' && digit <= '7') {
            stated = stated * 8 + valueOf(digit) - valueOf('0');
        }
    }
    return sum == stated;
}

bool isText(std::string_view head)
{
    return std::all_of(head.begin(), head.end(), [](char character) {
        return valueOf(character) >= 0x20 || character == '\n' || character == '\r' || character == '\t';
    });
}

} // namespace

ArchiveKind kindOf(std::string_view head)
{
    if (head.empty()) {
        return ArchiveKind::empty;
    }
    const auto known = std::find_if(magics.begin(), magics.end(),
                                    [head](const Magic& magic) { return head.starts_with(magic.bytes); });
    if (known != magics.end()) {
        return known->kind;
    }
    if (startsTar(head)) {
        return ArchiveKind::tar;
    }
    return isText(head) ? ArchiveKind::text : ArchiveKind::unknown;
}

const char* kindName(ArchiveKind kind)
{
    constexpr std::array names = {"missing", "empty", "tar",  "gzip",    "xz",         "bzip2",
                                  "zstd",    "zip",   "text", "unknown", "not a file", "not readable"};
    static_assert(names.size() == static_cast<std::size_t>(ArchiveKind::notReadable) + 1);
    return names.at(static_cast<std::size_t>(kind));
}

bool canBeUnpacked(ArchiveKind kind)
{
    switch (kind) {
    case ArchiveKind::tar:
    case ArchiveKind::gzip:
    case ArchiveKind::xz:
    case ArchiveKind::bzip2:
    case ArchiveKind::zstd:
        return true;
    default:
        return false;
    }
}

} // namespace kelpctl
