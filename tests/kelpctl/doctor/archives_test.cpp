#include "doctor/archives.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

using kelpctl::Archive;
using kelpctl::ArchiveKind;
using kelpctl::lookAt;
using kelpctl::lookAtArchives;

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
