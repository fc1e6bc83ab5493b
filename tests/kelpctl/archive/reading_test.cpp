// Whole archives, through all layers of packing.
#include "archive/reading.h"

#include "archive/made_archives.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using kelpctl::ArchiveFacts;
using kelpctl::Damage;
using kelpctl::Extent;
using kelpctl::readArchive;
using kelpctl::Reading;
using kelpctl::ShellState;

ArchiveFacts read(const std::string& bytes, const Reading& reading = {})
{
    std::istringstream stream(bytes);
    return readArchive(stream, bytes.size(), reading);
}

// Bytes that do not get smaller.
std::string noise(std::size_t length)
{
    std::string bytes(length, '\0');
    std::uint32_t state = 1;
    for (char& each : bytes) {
        state = state * 1664525U + 1013904223U;
        each = static_cast<char>(state >> 24U);
    }
    return bytes;
}

std::string largeTar()
{
    return rootFileSystem().file("var/large", noise(600000)).finished();
}

class Packing : public testing::TestWithParam<const char*> {
protected:
    const std::string tar = largeTar();
    const std::string bytes = packed(GetParam(), tar);
};

TEST_P(Packing, IsReadToTheEnd)
{
    const ArchiveFacts facts = read(bytes);
    EXPECT_STREQ(kelpctl::kindName(facts.kind), GetParam());
    EXPECT_EQ(facts.extent, Extent::whole);
    EXPECT_EQ(facts.damage, Damage::none) << facts.reason;
    EXPECT_EQ(facts.entries, 7U);
    EXPECT_EQ(facts.unpackedBytes, tar.size());
    EXPECT_EQ(facts.fileBytes, bytes.size());
    EXPECT_TRUE(facts.endMarked);
    EXPECT_TRUE(facts.root.hasEtc);
    EXPECT_EQ(facts.root.shell, ShellState::present);
    EXPECT_EQ(facts.root.processor, "amd64");
}

TEST_P(Packing, ThatIsCutOffIsTold)
{
    for (const std::size_t length : {bytes.size() - 1025, bytes.size() / 2, bytes.size() / 10}) {
        const ArchiveFacts facts = read(bytes.substr(0, length));
        EXPECT_EQ(facts.damage, Damage::cutOff) << length << ": " << facts.reason;
        EXPECT_EQ(facts.extent, Extent::beginning);
        EXPECT_NE(facts.reason, "");
    }
}

TEST_P(Packing, WithOneWrongByteIsBroken)
{
    if (GetParam() == std::string("tar") || GetParam() == std::string("zstd")) {
        return; // tar has no checksum of its contents, zstd one where it was asked for
    }
    for (const std::size_t position : {bytes.size() / 2, bytes.size() - 100000}) {
        std::string wrong = bytes;
        wrong[position] = static_cast<char>(wrong[position] ^ 0x10);
        const ArchiveFacts facts = read(wrong);
        EXPECT_EQ(facts.damage, Damage::broken) << position << ": " << facts.reason;
        EXPECT_EQ(facts.extent, Extent::beginning);
    }
}

TEST_P(Packing, OfSomethingElseIsNoTar)
{
    const std::string name = GetParam();
    const ArchiveFacts facts = read(packed(name, "just a letter\n"));
    EXPECT_EQ(facts.damage, name == "tar" ? Damage::none : Damage::noTar);
    EXPECT_EQ(facts.extent, name == "tar" ? Extent::nothing : Extent::beginning);
}

INSTANTIATE_TEST_SUITE_P(Reading, Packing, testing::Values("tar", "gzip", "xz", "bzip2", "zstd"));

// The last eight bytes are the checksum and the length: libarchive alone would not notice.
TEST(Reading, ChecksumAndLengthOfGzipCount)
{
    const std::string bytes = packed("gzip", rootFileSystem().finished());
    for (const std::size_t fromEnd : {8U, 5U, 4U}) {
        std::string wrong = bytes;
        wrong[wrong.size() - fromEnd] = static_cast<char>(wrong[wrong.size() - fromEnd] ^ 1);
        EXPECT_EQ(read(wrong).damage, Damage::broken) << fromEnd;
    }
    for (const std::size_t missing : {1U, 8U}) {
        EXPECT_EQ(read(bytes.substr(0, bytes.size() - missing)).damage, Damage::cutOff) << missing;
    }
}

TEST(Reading, GzipMayBeOfSeveralMembersAndHaveSomethingBehindIt)
{
    const std::string tar = largeTar();
    const std::string two = packed("gzip", tar.substr(0, 1000)) + packed("gzip", tar.substr(1000));
    EXPECT_EQ(read(two).extent, Extent::whole);
    EXPECT_EQ(read(two).unpackedBytes, tar.size());
    EXPECT_EQ(read(two + std::string(512, '\0')).extent, Extent::whole);
    EXPECT_EQ(read(two + "signature").extent, Extent::whole);
}

TEST(Reading, EmptyPackingHoldsNothing)
{
    for (const char* kind : {"gzip", "xz", "bzip2", "zstd"}) {
        const ArchiveFacts facts = read(packed(kind, ""));
        EXPECT_EQ(facts.extent, Extent::whole) << kind << ": " << facts.reason;
        EXPECT_EQ(facts.entries, 0U);
    }
}

TEST(Reading, EndMarkIsMissedWhereItIsNot)
{
    EXPECT_TRUE(read(rootFileSystem().finished()).endMarked);
    EXPECT_FALSE(read(rootFileSystem().unfinished()).endMarked);
    EXPECT_EQ(read(rootFileSystem().unfinished()).extent, Extent::whole);
}

TEST(Reading, QuickLookEndsEarlyAndKnowsWhatTheFileSays)
{
    const std::string tar = rootFileSystem().file("var/large", std::string(20U << 20U, 'x')).finished();
    const ArchiveFacts plain = read(tar, kelpctl::quickLook());
    EXPECT_EQ(plain.extent, Extent::beginning);
    EXPECT_EQ(plain.damage, Damage::none);
    EXPECT_TRUE(plain.root.found());
    EXPECT_EQ(plain.unpackedBytes, tar.size());
    EXPECT_EQ(read(packed("gzip", tar), kelpctl::quickLook()).unpackedBytes, tar.size());
    EXPECT_EQ(read(packed("xz", tar), kelpctl::quickLook()).unpackedBytes, std::nullopt);
    EXPECT_EQ(read(packed("gzip", tar), kelpctl::quickLook()).extent, Extent::beginning);
    EXPECT_EQ(read(packed("gzip", largeTar()), kelpctl::quickLook()).extent, Extent::whole) << "a small one is read";
}

// Of several members gzip's last number is that of the last one.
TEST(Reading, LengthThatCannotBeIsNotBelieved)
{
    const std::string large = rootFileSystem().file("var/large", noise(18U << 20U)).finished();
    const std::string two = packed("gzip", large) + packed("gzip", "x");
    EXPECT_EQ(read(two, kelpctl::quickLook()).unpackedBytes, std::nullopt);
}

// It leaves out multiples of 4 GiB, so a file of that size may hold as much more.
TEST(Reading, LengthThatMayBeAnotherIsNotBelieved)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "large.tar.gz";
    const std::string tar = rootFileSystem().file("var/large", std::string(20U << 20U, 'x')).finished();
    std::ofstream(file, std::ios::binary) << packed("gzip", tar);
    constexpr std::uintmax_t size = 640U << 20U;
    std::filesystem::resize_file(file, size - 4);
    std::ofstream(file, std::ios::binary | std::ios::app) << std::string("\0\0\0\x30", 4);
    const ArchiveFacts facts = readArchive(file, kelpctl::quickLook());
    EXPECT_EQ(facts.fileBytes, size);
    EXPECT_EQ(facts.extent, Extent::beginning);
    EXPECT_EQ(facts.unpackedBytes, std::nullopt) << "768 MiB, or 4 GiB more";
}

TEST(Reading, WatcherIsToldAndMayEndIt)
{
    const std::string bytes = packed("gzip", largeTar());
    std::uintmax_t told = 0;
    read(bytes, {.watch = [&told](std::uintmax_t count) { told = count; }});
    EXPECT_EQ(told, bytes.size());
    const Reading ended{.watch = [](std::uintmax_t) { throw std::runtime_error("enough"); }};
    EXPECT_THROW(read(bytes, ended), std::runtime_error);
}

TEST(Reading, FileIsComparedWithTheSumBesideIt)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / u"grüße.tar.gz";
    std::ofstream(file, std::ios::binary) << packed("gzip", rootFileSystem().finished());
    EXPECT_FALSE(readArchive(file).checksum);
    std::filesystem::path sum = file;
    sum += ".sha256";
    std::ofstream(sum) << std::string(64, '0') << "  other\n";
    const ArchiveFacts facts = readArchive(file);
    ASSERT_TRUE(facts.checksum);
    EXPECT_EQ(facts.checksum->expected, std::string(64, '0'));
    EXPECT_EQ(facts.checksum->found.size(), 64U);
    EXPECT_EQ(readArchive(file, kelpctl::quickLook()).checksum->found, "") << "a quick look compares nothing";
}

TEST(Reading, WhatIsNoFileIsNotOpened)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readArchive(folder.path()).kind, kelpctl::ArchiveKind::notAFile);
    EXPECT_EQ(readArchive(folder.path() / "missing").kind, kelpctl::ArchiveKind::missing);
    EXPECT_EQ(readArchive(folder.path() / "missing").extent, Extent::nothing);
}

} // namespace
