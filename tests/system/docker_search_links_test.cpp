// Links, permissions and encodings as only POSIX can make them in a test.
#include "machine.h"

#include "orb/lvm.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

class DockerSearchLinks : public testing::Test {
protected:
    DockerSearchLinks()
    {
        std::filesystem::copy_file(SCRIPTED_PROGRAM, files.path() / "client");
        std::filesystem::copy_file(SCRIPTED_PROGRAM, good);
    }

    std::string chosen(const std::string& lines) const
    {
        programs.add("where", lines);
        return orb::lvm::getContainerExecutablePath();
    }

    EnvironmentVariable backend{"USE_WSL", "0"};
    TemporaryFolder files;
    ScriptedPrograms programs;
    std::string link = utf8(files.path() / "docker.exe");
    std::string good = utf8(files.path() / "good.exe");
};

TEST_F(DockerSearchLinks, ALinkIsPassedOver)
{
    std::filesystem::create_symlink(files.path() / "client", link);
    EXPECT_EQ(chosen(link + "\r\n" + good + "\r\n"), good);
}

TEST_F(DockerSearchLinks, ALinkAloneIsTakenAllTheSame)
{
    std::filesystem::create_symlink(files.path() / "client", link);
    EXPECT_EQ(chosen(link + "\r\n"), link);
}

TEST_F(DockerSearchLinks, ABrokenLinkDoesNotExist)
{
    std::filesystem::create_symlink(files.path() / "nowhere", link);
    EXPECT_EQ(chosen(link + "\r\n" + good + "\r\n"), good);
}

TEST_F(DockerSearchLinks, ALoopOfLinksIsAnErrorThatNamesTheOperation)
{
    std::filesystem::create_symlink(link, link);
    try {
        chosen(link + "\r\n");
        FAIL();
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find("exists"), std::string::npos) << error.what();
        EXPECT_EQ(error.path1(), std::filesystem::path(link));
        EXPECT_EQ(error.code(), std::errc::too_many_symbolic_link_levels);
    }
}

TEST_F(DockerSearchLinks, ALineThatIsNotUtf8IsAnError)
{
    programs.add("where", "/\xff\xfe/docker.exe\r\n" + good + "\r\n");
    EXPECT_THROW(orb::lvm::getContainerExecutablePath(), std::system_error);
}

TEST_F(DockerSearchLinks, AnUnreadableFileIsAFileAllTheSame)
{
    std::filesystem::permissions(good, std::filesystem::perms::none);
    EXPECT_EQ(chosen(good + "\r\n"), good);
}

} // namespace
