// What only POSIX has.
#include "host/files.h"
#include "host/text.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace {

using namespace foundation::core;

TEST(Links, ALinkIsALinkWhereverItLeads)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    std::filesystem::create_symlink(folder.path() / "file", folder.path() / "to-file");
    std::filesystem::create_directory_symlink(folder.path(), folder.path() / "to-folder");
    std::filesystem::create_symlink(folder.path() / "nowhere", folder.path() / "broken");
    EXPECT_TRUE(path::is_link(folder.path() / "to-file"));
    EXPECT_TRUE(path::is_link(folder.path() / "to-folder"));
    EXPECT_TRUE(path::is_link(folder.path() / "broken"));
    EXPECT_FALSE(path::is_link(folder.path() / "to-folder" / "file")) << "only the path itself counts";
}

TEST(Links, APathThatCannotBeLookedAtIsAnErrorWithTheSystemsCode)
{
    const std::filesystem::path tooLong = "/tmp/" + std::string(5000, 'x');
    for (const auto test : {path::exists, path::is_link, path::is_regular_file}) {
        try {
            test(tooLong);
            ADD_FAILURE() << "no error";
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.code(), std::errc::filename_too_long);
        }
    }
}

TEST(Paths, AreUtf8Only)
{
    try {
        text::cvt_string_ustring("\xff\xfe");
        ADD_FAILURE() << "no error";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::illegal_byte_sequence);
    }
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
