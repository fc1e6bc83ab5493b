#include "asking/unpacked_size.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

namespace {

using kelpctl::unpackedByGzip;
using kelpctl::unpackedSize;

constexpr std::uint64_t mib = 1 << 20;
constexpr std::uint64_t gib = mib << 10;

std::uint32_t kept(std::uint64_t size)
{
    return static_cast<std::uint32_t>(size);
}

TEST(UnpackedSize, OfGzipIsWhatItKeeps)
{
    EXPECT_EQ(unpackedByGzip(86 * mib, kept(300 * mib)), 300 * mib);
    EXPECT_EQ(unpackedByGzip(400 * mib, kept(gib + 7)), gib + 7);
    EXPECT_EQ(unpackedByGzip(600 * mib, kept(gib)), gib);
    EXPECT_EQ(unpackedByGzip(20, 20), 20U);
    EXPECT_EQ(unpackedByGzip(mib, kept(gib)), gib) << "zeros";
}

TEST(UnpackedSize, OfGzipIsNotKnownWhenItMayBeAnother)
{
    EXPECT_EQ(unpackedByGzip(600 * mib, kept(700 * mib)), std::nullopt) << "or 4.7 GiB";
    EXPECT_EQ(unpackedByGzip(2 * gib, kept(3 * gib)), std::nullopt) << "or 7 GiB";
    EXPECT_EQ(unpackedByGzip(300 * mib, kept(200 * mib)), std::nullopt) << "more than 4 GiB, or several parts";
    EXPECT_EQ(unpackedByGzip(2 * gib, kept(5 * gib)), std::nullopt);
}

class UnpackedSizeOfFile : public testing::Test {
protected:
    std::optional<std::uint64_t> sizeOf(const std::string& content) const
    {
        std::ofstream(folder.path() / "archive", std::ios::binary) << content;
        return unpackedSize(folder.path() / "archive");
    }

    TemporaryFolder folder;
};

TEST_F(UnpackedSizeOfFile, IsReadFromTheEndOfGzip)
{
    EXPECT_EQ(sizeOf(std::string("\x1f\x8b", 2) + std::string(300, 'x') + std::string("\x01\x02\x03\x00", 4)),
              0x030201U);
}

TEST_F(UnpackedSizeOfFile, IsThatOfAPlainTar)
{
    EXPECT_EQ(sizeOf(std::string(257, 'x') + "ustar" + std::string(1000, 'x')), 1262U);
}

TEST_F(UnpackedSizeOfFile, IsNotKnownOfAnythingElse)
{
    EXPECT_EQ(sizeOf(""), std::nullopt);
    EXPECT_EQ(sizeOf("\x1f\x8b"), std::nullopt);
    EXPECT_EQ(sizeOf(std::string("\xfd"
                                 "7zXZ\0",
                                 6) +
                     std::string(1000, 'x')),
              std::nullopt);
    EXPECT_EQ(sizeOf(std::string(5000, 'x')), std::nullopt);
    EXPECT_EQ(unpackedSize(folder.path()), std::nullopt);
    EXPECT_EQ(unpackedSize(folder.path() / "none"), std::nullopt);
}

} // namespace
