// File tests that name the failing operation.
#include "host_test.h"

#include "files.h"

namespace {

using namespace fake;
using namespace orb::lvm::detail;

class Files : public HostTest {
protected:
    TestFolder folder;
};

TEST_F(Files, PathsComeFromTheNativeNarrowEncoding)
{
    EXPECT_EQ(toPath("na\xC3\xAFve").u16string(), u"na\u00EFve");
    EXPECT_TRUE(toPath("").empty());
    expectEvents({"cvt_string_ustring na\xC3\xAFve", "cvt_string_ustring "});
}

TEST_F(Files, AnIllFormedPathIsASystemError)
{
    EXPECT_THROW(toPath("bad \xFF\xFE"), std::system_error);
}

TEST_F(Files, ExistenceOfFilesAndFolders)
{
    EXPECT_TRUE(pathExists(toPath(folder.makeFile("file"))));
    EXPECT_TRUE(pathExists(folder.path()));
    EXPECT_FALSE(pathExists(toPath(folder.entry("missing"))));
    EXPECT_FALSE(pathExists(toPath(folder.entry("missing/file"))));
    EXPECT_FALSE(pathExists(toPath(folder.entry("file/below"))));
    EXPECT_FALSE(pathExists(toPath("")));
}

TEST_F(Files, OnlyAFileIsARegularFile)
{
    EXPECT_TRUE(isRegularFile(toPath(folder.makeFile("file"))));
    EXPECT_FALSE(isRegularFile(folder.path()));
    EXPECT_FALSE(isRegularFile(toPath(folder.entry("missing"))));
    EXPECT_FALSE(isRegularFile(toPath("")));
}

TEST_F(Files, TheHostTellsLinks)
{
    EXPECT_FALSE(isLink("some path"));
    host().isLink = [](const std::filesystem::path&, std::error_code&) { return true; };
    EXPECT_TRUE(isLink("some path"));
    expectEvents({"is_link some path", "is_link some path"});
}

TEST_F(Files, ALinkThatCannotBeToldIsAnErrorNamedSymlinkStatus)
{
    const auto code = std::make_error_code(std::errc::permission_denied);
    host().isLink = [code](const std::filesystem::path&, std::error_code& error) {
        error = code;
        return true;
    };
    try {
        isLink("some path");
        ADD_FAILURE() << "no error";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_STREQ(error.what(), std::filesystem::filesystem_error("symlink_status", "some path", code).what());
        EXPECT_EQ(error.path1(), "some path");
        EXPECT_EQ(error.code(), code);
    }
}

} // namespace
