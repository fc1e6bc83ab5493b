#include "asking/volume.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include "host/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using kelpctl::Programs;
using kelpctl::Run;
using kelpctl::Volume;

std::string utf8(const std::filesystem::path& path)
{
    return foundation::core::text::cvt_ustring_utf8(path.u16string());
}

// An engine that says so, with this status.
Programs engine(const std::string& answer, std::int32_t status = 0)
{
    return {[answer, status](const auto& arguments, const auto& /*environment*/, const auto& /*folder*/) {
                return kelpctl::runOf(arguments, {status, answer, {}});
            },
            {}};
}

TEST(Volume, HasRoomWhereThereIsAFolder)
{
    const TemporaryFolder folder;
    const Volume volume = kelpctl::volumeOf(folder.path());
    EXPECT_EQ(volume.folder, utf8(folder.path()));
    ASSERT_TRUE(volume.freeBytes);
    EXPECT_GT(*volume.freeBytes, 0U);
    EXPECT_TRUE(kelpctl::temporaryVolume().freeBytes);
}

TEST(Volume, OfTheEngineIsWhatItSaysWhereThatIsAFolderHere)
{
    const EnvironmentVariable none("LOCALAPPDATA");
    const TemporaryFolder folder;
    EXPECT_EQ(kelpctl::engineVolume(engine(utf8(folder.path()) + "\n"), "docker").folder, utf8(folder.path()));
    EXPECT_EQ(kelpctl::engineVolume(engine(utf8(folder.path() / "none") + "\n"), "docker").folder, "");
    EXPECT_EQ(kelpctl::engineVolume(engine(""), "docker").folder, "");
    EXPECT_EQ(kelpctl::engineVolume(engine("/", 1), "docker").folder, "");
}

TEST(Volume, OfDockerDesktopIsTheUsersFolder)
{
    const TemporaryFolder folder;
    const EnvironmentVariable local("LOCALAPPDATA", utf8(folder.path()));
    EXPECT_EQ(kelpctl::engineVolume(engine("/in/the/machine/of/docker"), "docker").folder, "");
    std::filesystem::create_directory(folder.path() / "Docker");
    EXPECT_EQ(kelpctl::engineVolume(engine("/in/the/machine/of/docker"), "docker").folder,
              utf8(folder.path() / "Docker"));
}

} // namespace
