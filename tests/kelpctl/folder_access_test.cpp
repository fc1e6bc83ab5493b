#include "folder_access.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using kelpctl::mayWriteInto;

TEST(FolderAccess, FolderOfOnesOwnMayBeWrittenToAndIsLeftAsItIs)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(mayWriteInto(folder.path()));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(FolderAccess, MissingFolderMayNot)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(mayWriteInto(folder.path() / "missing"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "missing"));
}

} // namespace
