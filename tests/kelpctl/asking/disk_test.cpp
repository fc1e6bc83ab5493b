#include "asking/disk.h"

#include "registered.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace {

using kelpctl::Disk;
using kelpctl::diskOf;
using kelpctl::DiskState;

constexpr char name[] = "disk_test_hub";

class DistributionDisk : public testing::Test {
protected:
    void fill() const { std::ofstream(folder.path() / "ext4.vhdx") << std::string(1234, 'x'); }

    OwnRegistry registry;
    TemporaryFolder folder;
};

TEST_F(DistributionDisk, ThatIsThereHasItsSize)
{
    fill();
    const Registered registered({name, folder.path()});
    const std::optional<Disk> disk = diskOf(name);
    ASSERT_TRUE(disk);
    EXPECT_EQ(disk->state, DiskState::present);
    EXPECT_EQ(disk->bytes, 1234U);
    EXPECT_TRUE(std::filesystem::equivalent(disk->path, folder.path() / "ext4.vhdx"));
}

TEST_F(DistributionDisk, IsGoneWithAndWithoutItsFolder)
{
    const Registered registered({name, folder.path() / "gone"});
    for (const bool folderIsThere : {false, true}) {
        if (folderIsThere) {
            std::filesystem::create_directory(folder.path() / "gone");
        }
        const std::optional<Disk> disk = diskOf(name);
        ASSERT_TRUE(disk);
        EXPECT_EQ(disk->state, DiskState::gone);
        EXPECT_EQ(disk->bytes, std::nullopt);
    }
}

TEST_F(DistributionDisk, ThatCannotBeLookedAtIsNotCalledGone)
{
    const Registered other({"another", folder.path()});
    const Registered registered({name, other.unreachableFolder()});
    const std::optional<Disk> disk = diskOf(name);
    ASSERT_TRUE(disk);
    EXPECT_EQ(disk->state, DiskState::unreachable);
}

TEST_F(DistributionDisk, IsNotKnownOfWhatIsNotRegisteredNotInstalledOrHasNone)
{
    fill();
    EXPECT_FALSE(diskOf(name));
    {
        const Registered registered({"disk_test_hub_2", folder.path()});
        EXPECT_FALSE(diskOf(name));
    }
    {
        const Registered registered({.name = name, .folder = folder.path(), .installed = false});
        EXPECT_FALSE(diskOf(name)) << "it may be made at this moment";
    }
    {
        const Registered registered({.name = name, .folder = folder.path(), .ownMachine = false});
        EXPECT_FALSE(diskOf(name)) << "WSL 1 has none";
    }
    const Registered registered({name, std::nullopt});
    EXPECT_FALSE(diskOf(name)) << "the entry is not whole";
}

} // namespace
