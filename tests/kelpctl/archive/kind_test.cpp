#include "archive/kind.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <ostream>
#include <string>

namespace {

using kelpctl::ArchiveKind;
using kelpctl::kindName;
using kelpctl::kindOf;
using namespace std::string_literals;

// The header of a file "etc/hostname" in a tar archive.
std::string tarHeader(bool withMagic)
{
    std::string header(512, '\0');
    header.replace(0, 12, "etc/hostname");
    header.replace(100, 7, "0000644");
    header.replace(124, 11, "00000000005");
    header[156] = '0';
    if (withMagic) {
        header.replace(257, 5, "ustar");
    }
    header.replace(148, 8, 8, ' ');
    unsigned int sum = 0;
    for (const char byte : header) {
        sum += static_cast<unsigned char>(byte);
    }
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "%06o", sum);
    header.replace(148, 6, digits.data());
    header[154] = '\0';
    return header;
}

struct Row {
    const char* name;
    std::string head;
    ArchiveKind kind;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.name;
}

class Kind : public testing::TestWithParam<Row> {};

TEST_P(Kind, IsToldByTheFirstBytes)
{
    EXPECT_STREQ(kindName(kindOf(GetParam().head)), kindName(GetParam().kind));
}

INSTANTIATE_TEST_SUITE_P(
    Archives, Kind,
    testing::Values(Row{"nothing", "", ArchiveKind::empty}, Row{"gzip", "\x1f\x8b\x08\0\0"s, ArchiveKind::gzip},
                    Row{"xz",
                        "\xfd"
                        "7zXZ\0\0\x04"s,
                        ArchiveKind::xz},
                    Row{"bzip2", "BZh91AY", ArchiveKind::bzip2}, Row{"zstd", "\x28\xb5\x2f\xfd\x24", ArchiveKind::zstd},
                    Row{"zip", "PK\x03\x04", ArchiveKind::zip}, Row{"empty zip", "PK\x05\x06", ArchiveKind::zip},
                    Row{"tar", tarHeader(true), ArchiveKind::tar},
                    Row{"tar of the oldest kind", tarHeader(false), ArchiveKind::tar},
                    Row{"tar that is cut off", tarHeader(true).substr(0, 511), ArchiveKind::unknown},
                    Row{"zeros", std::string(512, '\0'), ArchiveKind::unknown},
                    Row{"text", "<html>\r\n\tnot found\n", ArchiveKind::text},
                    Row{"text in another script", "h\xc3\xa9\xe6\xbc\xa2\n", ArchiveKind::text},
                    Row{"half of gzip's mark", "\x1f", ArchiveKind::unknown},
                    Row{"anything", "MZ\x90\0\x03"s, ArchiveKind::unknown}));

TEST(Archives, OneChangedByteMakesATarHeaderUnknown)
{
    std::string header = tarHeader(true);
    header[3] = '_';
    EXPECT_EQ(kindOf(header), ArchiveKind::unknown);
}

} // namespace
