#include "host/files.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace foundation::core;

TEST(TemporaryNames, TheDirectoryExistsAndHasNoSeparatorAtTheEnd)
{
    const std::u16string directory = path::temp_directory_name();
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(directory)));
    EXPECT_NE(directory.back(), u'/');
    EXPECT_NE(directory.back(), u'\\');
}

TEST(TemporaryNames, ANameLiesInsideTheDirectoryBetweenPrefixAndSuffix)
{
    const std::filesystem::path name(path::tmpnam(u"folder", u"before-", u".after"));
    EXPECT_EQ(name.parent_path(), std::filesystem::path("folder"));
    const std::string file = name.filename().string();
    EXPECT_EQ(file.size(), 7U + 32U + 6U);
    EXPECT_TRUE(file.starts_with("before-"));
    EXPECT_TRUE(file.ends_with(".after"));
    EXPECT_EQ(file.substr(7, 32).find_first_not_of("0123456789abcdef"), std::string::npos);
}

TEST(TemporaryNames, EveryNameIsNewAndNothingIsCreated)
{
    const TemporaryFolder folder;
    std::set<std::u16string> names;
    for (int round = 0; round < 1000; ++round) {
        names.insert(path::tmpnam(folder.path().u16string(), {}, {}));
    }
    EXPECT_EQ(names.size(), 1000U);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(TemporaryNames, NoDigitOfANameCanBeForetold)
{
    constexpr std::size_t digits = 32;
    // So many draws leave out one of 16 digits at one of 32 places once in 10^53 times.
    constexpr int draws = 2000;
    std::vector<std::set<char16_t>> seen(digits);
    for (int round = 0; round < draws; ++round) {
        const std::u16string name = path::tmpnam({}, {}, {});
        ASSERT_GE(name.size(), digits);
        for (std::size_t place = 0; place < digits; ++place) {
            seen[place].insert(name[name.size() - digits + place]);
        }
    }
    for (const std::set<char16_t>& each : seen) {
        EXPECT_EQ(each.size(), 16U);
    }
}

TEST(Files, WhatExistsExists)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / std::filesystem::path(u"é 漢字");
    EXPECT_FALSE(path::exists(file.u16string()));
    std::ofstream(file) << "content";
    EXPECT_TRUE(path::exists(file.u16string()));
    EXPECT_TRUE(path::exists(folder.path().u16string()));
    EXPECT_FALSE(path::exists(u""));
}

TEST(Files, AFileAFolderAndNothingAreNoLinks)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    for (const char* name : {"file", ".", "missing", "missing/deeper"}) {
        std::error_code error = std::make_error_code(std::errc::io_error);
        EXPECT_FALSE(path::is_link(folder.path() / name, error)) << name;
        EXPECT_FALSE(error) << name << ": " << error.message();
    }
}

} // namespace
