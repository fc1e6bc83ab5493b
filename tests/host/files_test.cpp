#include "host/configuration.h"
#include "host/files.h"
#include "host/text.h"

#include "files_system.h"
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

// The configuration of this process while it lives.
class ConfiguredFolder {
public:
    explicit ConfiguredFolder(const std::string& folder)
    {
        config::Configuration configuration;
        configuration.setTemporaryFolder(folder);
        config::configure(configuration);
    }
    ~ConfiguredFolder() { config::configure({}); }
    ConfiguredFolder(const ConfiguredFolder&) = delete;
    ConfiguredFolder& operator=(const ConfiguredFolder&) = delete;
};

TEST(TemporaryNames, TheConfiguredFolderTakesThePlaceOfTheUsersOwn)
{
    const std::u16string own = path::temp_directory_name();
    {
        const ConfiguredFolder configured(folderGiven);
        EXPECT_EQ(path::temp_directory_name(), folderKept);
    }
    EXPECT_EQ(path::temp_directory_name(), own);
    const ConfiguredFolder none("");
    EXPECT_EQ(path::temp_directory_name(), own);
}

TEST(TemporaryNames, AConfiguredRootKeepsItsSeparator)
{
    const ConfiguredFolder configured(text::cvt_ustring_utf8(rootFolder));
    EXPECT_EQ(path::temp_directory_name(), rootFolder);
}

TEST(TemporaryNames, AConfiguredFolderThatIsNotUtf8IsAnError)
{
    const ConfiguredFolder configured("\xff\xfe");
    EXPECT_THROW(path::temp_directory_name(), std::system_error);
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

TEST(Files, WhatLeadsNowhereIsNothingAndNoError)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    for (const char* name : {"missing", "missing/deeper", "file/below"}) {
        EXPECT_FALSE(path::exists(folder.path() / name)) << name;
        EXPECT_FALSE(path::is_link(folder.path() / name)) << name;
        EXPECT_FALSE(path::is_regular_file(folder.path() / name)) << name;
    }
    EXPECT_FALSE(path::is_link({}));
    EXPECT_FALSE(path::is_regular_file({}));
}

TEST(Files, OnlyAFileIsARegularFileAndNeitherItNorAFolderIsALink)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    EXPECT_TRUE(path::is_regular_file(folder.path() / "file"));
    EXPECT_FALSE(path::is_regular_file(folder.path()));
    EXPECT_FALSE(path::is_link(folder.path() / "file"));
    EXPECT_FALSE(path::is_link(folder.path()));
}

TEST(Files, LinksAreFollowed)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    const Link toFile("file", folder.path() / "to-file");
    const Link broken("nowhere", folder.path() / "broken");
    EXPECT_TRUE(path::exists(toFile.path()));
    EXPECT_TRUE(path::is_regular_file(toFile.path()));
    EXPECT_FALSE(path::exists(broken.path()));
    EXPECT_FALSE(path::is_regular_file(broken.path()));
}

// The name of the operation that the failure gives.
std::string failureOf(bool test(const std::filesystem::path& path), const std::filesystem::path& path)
{
    try {
        test(path);
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.path1(), path);
        EXPECT_TRUE(error.code());
        const std::string text = error.what();
        return text.substr(0, text.rfind(": "));
    }
    return "none";
}

TEST(Files, APathThatCannotBeLookedAtIsAnErrorThatNamesTheTest)
{
    const TemporaryFolder folder;
    const Link loop("loop", folder.path() / "loop");
    EXPECT_EQ(failureOf(path::exists, loop.path()), "filesystem error: exists");
    EXPECT_EQ(failureOf(path::is_regular_file, loop.path()), "filesystem error: status");
    EXPECT_EQ(failureOf(path::is_link, loop.path() / "below"), "filesystem error: symlink_status");
}

TEST(Files, PathsMayBeOfAnyLength)
{
    const TemporaryFolder folder;
    std::filesystem::path deep = folder.path();
    // Longer than Windows takes without being told, and in a form that needs no further work.
    while (deep.native().size() < 300) {
        deep /= "0123456789";
    }
    makeFolders(deep);
    EXPECT_TRUE(path::exists(deep));
    EXPECT_TRUE(path::exists(deep / ".." / "0123456789"));
    EXPECT_FALSE(path::is_link(deep));
    EXPECT_FALSE(path::is_regular_file(deep));
    EXPECT_FALSE(path::exists(deep / "missing"));
}

} // namespace
