// What only POSIX can do to the doctor in a test: links, signals, a temporary folder that is gone.
#include "machine.h"
#include "programs.h"

#include "orb/lvm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <filesystem>
#include <string>

namespace {

namespace json = boost::json;
using orb::process::detail::RunResult;
using testing::HasSubstr;

class DoctorOnPosix : public testing::Test {
protected:
    DoctorOnPosix() { std::filesystem::copy_file(SCRIPTED_PROGRAM, good); }

    json::value docker(const std::string& lines) const
    {
        programs.add("where", lines);
        const RunResult result = orb::process::detail::run({KELPCTL_PROGRAM, "--docker", "doctor", "--json"});
        return json::parse(result.standardOutput).at("result").at("docker");
    }

    TemporaryFolder files;
    std::string good = utf8(files.path() / "good.exe");
    std::string link = utf8(files.path() / "link.exe");
    InstallTree tree;
    ScriptedPrograms programs;
    EnvironmentVariable backend{"USE_WSL", "0"};
};

TEST_F(DoctorOnPosix, PassesOverALinkAsTheLibraryDoes)
{
    std::filesystem::create_symlink(good, link);
    const json::value section = docker(link + "\r\n" + good + "\r\n");
    EXPECT_EQ(section.at("client").as_string(), orb::lvm::getContainerExecutablePath());
    EXPECT_EQ(section.at("candidates").at(0).at("reason"), "link");
}

TEST_F(DoctorOnPosix, SaysThatALoopOfLinksEndsTheSearch)
{
    std::filesystem::create_symlink(link, link);
    const json::value section = docker(link + "\r\n" + good + "\r\n");
    EXPECT_THROW(orb::lvm::getContainerExecutablePath(), std::filesystem::filesystem_error);
    EXPECT_EQ(section.at("client"), nullptr);
    EXPECT_EQ(section.at("candidates").at(0).at("reason"), "notReadable");
    EXPECT_EQ(section.at("candidates").at(1).at("reason"), "notLookedAt");
    EXPECT_THAT(section.at("searchFailure").as_string(), HasSubstr(link));
}

TEST_F(DoctorOnPosix, SaysThatAPathThatIsNoTextEndsTheSearch)
{
    const json::value section = docker("C:\\\xff\\docker.exe\r\n" + good + "\r\n");
    EXPECT_THROW(orb::lvm::getContainerExecutablePath(), std::system_error);
    EXPECT_EQ(section.at("candidates").at(0).at("reason"), "notReadable");
}

TEST_F(DoctorOnPosix, WorksWithoutAnyFolderThatItLooksFor)
{
    const Wsl wsl;
    const RunResult result =
        orb::process::detail::run({KELPCTL_PROGRAM, "--wsl", "doctor"},
                                  {{"TMPDIR", "/no/such/folder"}, {"KORVANE_ROOT", "/no/such/\xff"}, {"HOME", ""}});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.standardOutput, HasSubstr("/no/such/folder"));
    EXPECT_THAT(result.standardOutput, HasSubstr("does not exist or may not be written to"));
}

TEST_F(DoctorOnPosix, IsInterrupted)
{
    const Wsl wsl;
    // Once it waits for wsl.exe, it is told to end.
    const std::string script = R"(PATH=$PATH:/usr/bin:/bin
"$0" --wsl doctor --time-limit 60 &
until grep -q "wsl -v" "$STAND_IN_CALLS"; do sleep 0.05; done
kill -TERM $!
wait $!)";
    const RunResult result =
        orb::process::detail::run({"/bin/sh", "-c", script, KELPCTL_PROGRAM}, {{"WSL_STAND_IN_MODE", "hang"}});
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_THAT(result.standardError, HasSubstr("error: INTERRUPTED"));
}

} // namespace
