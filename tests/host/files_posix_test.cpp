// Links as only POSIX can make them in a test.
#include "host/files.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace foundation::core;

bool isLink(const std::filesystem::path& path)
{
    std::error_code error;
    const bool result = path::is_link(path, error);
    EXPECT_FALSE(error) << error.message();
    return result;
}

TEST(Links, ALinkIsALinkWhereverItLeads)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    std::filesystem::create_symlink(folder.path() / "file", folder.path() / "to-file");
    std::filesystem::create_directory_symlink(folder.path(), folder.path() / "to-folder");
    std::filesystem::create_symlink(folder.path() / "nowhere", folder.path() / "broken");
    EXPECT_TRUE(isLink(folder.path() / "to-file"));
    EXPECT_TRUE(isLink(folder.path() / "to-folder"));
    EXPECT_TRUE(isLink(folder.path() / "broken"));
    EXPECT_FALSE(isLink(folder.path() / "to-folder" / "file")) << "only the path itself counts";
    EXPECT_TRUE(path::exists((folder.path() / "to-file").u16string()));
    EXPECT_FALSE(path::exists((folder.path() / "broken").u16string())) << "links are followed";
}

TEST(Links, APathThatCannotBeLookedAtIsReported)
{
    const std::string tooLong(5000, 'x');
    std::error_code error;
    EXPECT_FALSE(path::is_link("/tmp/" + tooLong, error));
    EXPECT_EQ(error, std::errc::filename_too_long);
}

TEST(TemporaryNames, TheDirectoryFollowsTheEnvironment)
{
    const TemporaryFolder folder;
    const EnvironmentVariable variable("TMPDIR", folder.path().string() + "/");
    EXPECT_EQ(path::temp_directory_name(), folder.path().u16string());
}

TEST(TemporaryNames, AMissingDirectoryIsAnError)
{
    const EnvironmentVariable variable("TMPDIR", "/no/such/folder");
    EXPECT_THROW(path::temp_directory_name(), std::filesystem::filesystem_error);
}

} // namespace
