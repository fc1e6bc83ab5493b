// Programs that somebody has put where a careless search would find them. A planted look-up gives away that it ran by
// its answer: a program that works, and that nothing else leads to.
#include "current_folder.h"
#include "machine.h"

#include "orb/lvm.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

class PlantedPrograms : public testing::Test {
protected:
    PlantedPrograms()
    {
        bait.add("wsl.exe", "the planted program's version\n");
        bait.add("docker.exe", "");
        for (const std::string name : {"where", "where.exe", "which", "which.exe"}) {
            bait.add(name, wsl() + "\r\n");
        }
    }

    std::string wsl() const { return utf8(bait.path("wsl.exe")); }
    std::string docker() const { return utf8(bait.path("docker.exe")); }

    TemporaryFolder empty;
    ScriptedPrograms bait;
    CurrentFolder current{bait.path("wsl.exe").parent_path()};
};

// No entry of these is absolute. Each leads a shell into the current folder.
const std::vector<std::string> pathsToHere = {"", ".", ".;.", ":", ";", "./", ".\\"};

TEST_F(PlantedPrograms, InTheCurrentFolderAreNotRunForWsl)
{
    // The answer is kept for the life of the process, so that one path has to stand for all.
    const EnvironmentVariable path("PATH", ".;.\\;./:.:");
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "C:\\Windows\\System32\\wsl.exe");
}

TEST_F(PlantedPrograms, InTheCurrentFolderAreNotRunForDocker)
{
    const EnvironmentVariable backend("USE_WSL", "0");
    for (const std::string& each : pathsToHere) {
        const EnvironmentVariable path("PATH", each);
        EXPECT_EQ(orb::lvm::getContainerExecutablePath(), "") << each;
    }
}

TEST_F(PlantedPrograms, ThatAreOnThePathAreRun)
{
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), wsl()) << "or the bait is none";
}

// The system's own look-up goes through the current folder first. What the library cannot change, it says.
class SystemsLookUp : public PlantedPrograms {
protected:
    StandIns standIns;
};

TEST_F(SystemsLookUp, TakesAWslFromTheCurrentFolder)
{
    EXPECT_TRUE(std::filesystem::equivalent(orb::lvm::getContainerExecutablePath(), wsl()));
}

TEST_F(SystemsLookUp, TakesNoneOnceTheHostHasLeftThatFolder)
{
    const CurrentFolder safe(empty.path());
    const SearchPath path(standInFolder(), true);
    EXPECT_TRUE(std::filesystem::equivalent(orb::lvm::getContainerExecutablePath(), standInFolder() / "wsl.exe"));
}

} // namespace
