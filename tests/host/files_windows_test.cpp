// File tests on paths that only Windows has.
#include "host/files.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace foundation::core;

TEST(FilesWindows, ThePrefixForAnyLengthIsPartOfAPath)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    const std::wstring prefixed = LR"(\\?\)" + std::filesystem::path(folder.path()).make_preferred().native();
    EXPECT_TRUE(path::exists(prefixed));
    EXPECT_TRUE(path::exists(prefixed + L"\\file"));
    EXPECT_TRUE(path::is_regular_file(prefixed + L"\\file"));
    EXPECT_FALSE(path::is_link(prefixed + L"\\file"));
    EXPECT_FALSE(path::exists(prefixed + L"\\missing"));
}

TEST(FilesWindows, ANameThatNoPathCanHaveIsThatOfNothing)
{
    const std::wstring longLines(5000, L'x');
    for (const std::wstring& name : {std::wstring(L"a|b"), std::wstring(L"C:\\a\r\nC:\\b"), std::wstring(L"*"),
                                     L"C:\\" + longLines + L"\r\n" + longLines}) {
        EXPECT_FALSE(path::exists(name));
        EXPECT_FALSE(path::is_link(name));
        EXPECT_FALSE(path::is_regular_file(name));
    }
}

TEST(FilesWindows, AFolderThatHoldsAMatchIsNotAFileOfThatName)
{
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "content";
    EXPECT_FALSE(path::exists(folder.path() / "f?le"));
    EXPECT_FALSE(path::is_link(folder.path() / "f*"));
}

} // namespace
