// Which docker.exe is taken, with real files of every kind.
#include "machine.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace {

class DockerSearch : public testing::Test {
protected:
    // The path that the library chooses when `where` prints these lines.
    std::string chosen(const std::string& lines) const
    {
        programs.add("where", lines);
        return orb::lvm::getContainerExecutablePath();
    }

    std::string client(const std::string& folder) const
    {
        const std::filesystem::path path = files.path() / folder / "docker.exe";
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(SCRIPTED_PROGRAM, path);
        return utf8(path);
    }

    EnvironmentVariable backend{"USE_WSL", "0"};
    TemporaryFolder files;
    InstallTree tree;
    ScriptedPrograms programs;
};

TEST_F(DockerSearch, TheFirstRegularFileIsTaken)
{
    const std::string first = client("first");
    const std::string second = client("second");
    EXPECT_EQ(chosen(first + "\r\n" + second + "\r\n"), first);
}

TEST_F(DockerSearch, AMissingFileAndAFolderArePassedOver)
{
    const std::string good = client("good");
    const std::filesystem::path folder = files.path() / "folder" / "docker.exe";
    std::filesystem::create_directories(folder);
    EXPECT_EQ(chosen(utf8(files.path() / "missing.exe") + "\r\n" + utf8(folder) + "\r\n" + good + "\r\n"), good);
    EXPECT_EQ(chosen(utf8(folder) + "\r\n"), utf8(folder)) << "nothing better: what was printed is taken";
}

TEST_F(DockerSearch, TheHostsOwnFolderIsPassedOver)
{
    const std::string own = "C:\\product\\bin\\win64\\docker.exe";
    const std::string good = client("good");
    EXPECT_EQ(chosen(own + "\r\n" + good + "\r\n"), good);
    EXPECT_EQ(chosen(own + "\r\n"), own);
}

TEST_F(DockerSearch, AThousandLinesAreSearchedToTheEnd)
{
    std::string lines;
    for (int number = 0; number < 1000; ++number) {
        lines += "relative/" + std::to_string(number) + "/docker.exe\r\n";
    }
    const std::string good = client("good");
    EXPECT_EQ(chosen(lines + good + "\r\n"), good);
}

TEST_F(DockerSearch, SeveralLinesThatAreAllRejectedAreAClientThatIsMissing)
{
    programs.add("where", "C:\\a\\bin\\win64\\docker.exe\r\nC:\\b\\bin\\win64\\docker.exe\r\n");
    EXPECT_FALSE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_FALSE(orb::lvm::stopContainerIfNecessary(""));
    EXPECT_NO_THROW(orb::lvm::clearDistroImage(""));
    EXPECT_THROW(orb::lvm::importFromTarIfNecessary("", "", false), foundation::core::except::IMsgIDException);
}

TEST_F(DockerSearch, TheUsersArgumentsMayHaveAnyLetters)
{
    programs.add("where", client("good") + "\r\n");
    const EnvironmentVariable arguments("AUX_DOCKER_ARGS", "-v C:\\J\u00FCrgen\\\u6F22\u5B57:/data");
    EXPECT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
}

TEST_F(DockerSearch, AFailedLookUpMeansNoClient)
{
    programs.add("where", client("ignored"), 1, "INFO: Could not find files for the given pattern(s).\r\n");
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "");
    try {
        orb::lvm::importFromTarIfNecessary("", "", false);
        FAIL();
    } catch (const foundation::core::except::IMsgIDException& error) {
        EXPECT_EQ(error.message().identifier, "DOCKER_NOT_AVAILABLE");
    }
    EXPECT_FALSE(orb::lvm::getContainerCommandPrefix("").empty());
}

TEST_F(DockerSearch, AnErrorOfTheLibraryIsCaughtAsItsExactType)
{
    programs.add("where", "", 1);
    using DockerNotAvailable =
        foundation::core::except::Exception<orb::container_support::DOCKER_NOT_AVAILABLE, std::exception, void>;
    EXPECT_THROW(orb::lvm::importFromTarIfNecessary("", "", false), DockerNotAvailable);
}

TEST_F(DockerSearch, WithoutAClientStartAndStopReportFailureAndRemovalReturns)
{
    programs.add("where", "", 1);
    EXPECT_FALSE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_FALSE(orb::lvm::stopContainerIfNecessary(""));
    EXPECT_NO_THROW(orb::lvm::clearDistroImage(""));
}

TEST_F(DockerSearch, WithoutALookUpCommandThereIsNoClient)
{
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "");
}

} // namespace
