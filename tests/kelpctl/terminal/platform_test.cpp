#include "terminal/platform.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include "host/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

using foundation::core::env::variable;
using kelpctl::mayWriteInto;

TEST(Platform, VariableThatWasSetIsSeenByTheRuntime)
{
    const EnvironmentVariable guard("KELPCTL_TEST");
    EXPECT_EQ(variable("KELPCTL_TEST"), std::nullopt);
    kelpctl::setEnvironmentVariable("KELPCTL_TEST", "value");
    ASSERT_NE(std::getenv("KELPCTL_TEST"), nullptr);
    EXPECT_STREQ(std::getenv("KELPCTL_TEST"), "value");
    EXPECT_EQ(variable("KELPCTL_TEST"), "value");
}

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
