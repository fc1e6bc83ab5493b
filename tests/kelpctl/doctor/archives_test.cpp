#include "doctor/archives.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

using kelpctl::Archive;
using kelpctl::ArchiveKind;
using kelpctl::kindName;
using kelpctl::kindOf;
using kelpctl::lookAt;
using kelpctl::lookAtArchives;
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

class ArchiveFolder : public testing::Test {
protected:
    void write(const std::string& name, std::string_view content) const
    {
        std::ofstream(folder.path() / name, std::ios::binary) << content;
    }

    std::string taken(const orb::lvm::detail::DefaultArchives& lookedFor) const
    {
        std::string names;
        for (const Archive& archive : lookAtArchives(folder.path(), lookedFor)) {
            names += archive.taken ? archive.name : "";
        }
        return names;
    }

    TemporaryFolder folder;
};

TEST_F(ArchiveFolder, TellsSizeAndKind)
{
    write("a.tar.gz", "\x1f\x8b and more");
    const Archive archive = lookAt(folder.path(), "a.tar.gz");
    EXPECT_TRUE(archive.present);
    EXPECT_EQ(archive.size, 11U);
    EXPECT_EQ(archive.kind, ArchiveKind::gzip);
}

TEST_F(ArchiveFolder, TellsWhatIsNoFile)
{
    EXPECT_EQ(lookAt(folder.path(), "missing").kind, ArchiveKind::missing);
    EXPECT_FALSE(lookAt(folder.path(), "missing").present);
    std::filesystem::create_directory(folder.path() / "folder.tar");
    EXPECT_EQ(lookAt(folder.path(), "folder.tar").kind, ArchiveKind::notAFile);
    EXPECT_TRUE(lookAt(folder.path(), "folder.tar").present);
    EXPECT_EQ(lookAt(folder.path() / "no-such-folder", "x").kind, ArchiveKind::missing);
}

TEST_F(ArchiveFolder, TakesWhatTheLibraryTakes)
{
    EXPECT_EQ(taken(orb::lvm::detail::distroArchives), "");
    EXPECT_EQ(taken(orb::lvm::detail::imageArchives), "");
    write("kelp_hub_distro.tar", "x");
    write("kelp_hub_docker.tar", "x");
    EXPECT_EQ(taken(orb::lvm::detail::distroArchives), "kelp_hub_distro.tar");
    EXPECT_EQ(taken(orb::lvm::detail::imageArchives), "kelp_hub_docker.tar");
    write("kelp_hub_distro.tar.gz", "");
    write("kelp_hub_docker.tar.gz", "");
    EXPECT_EQ(taken(orb::lvm::detail::distroArchives), "kelp_hub_distro.tar.gz");
    EXPECT_EQ(taken(orb::lvm::detail::imageArchives), "kelp_hub_docker.tar.gz");
}

} // namespace
