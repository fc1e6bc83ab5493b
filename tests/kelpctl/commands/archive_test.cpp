// The command that reads an archive, and what others do with one that is of no use.
#include "archive/made_archives.h"
#include "environment_variable.h"
#include "fake_lvm.h"
#include "session.h"
#include "temporary_folder.h"

#include "host/text.h"

#include <boost/json/value.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ArchiveCommand : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) const
    {
        const std::filesystem::path file = folder.path() / name;
        std::ofstream(file, std::ios::binary) << bytes;
        return foundation::core::text::cvt_ustring_utf8(file.u16string());
    }

    std::string identifier() const { return std::string(session.json().at("error").at("identifier").as_string()); }
    std::string cause() const
    {
        return std::string(session.json().at("error").at("cause").at("identifier").as_string());
    }

    const TemporaryFolder folder;
    const std::string good = write("good.tar.gz", packed("gzip", rootFileSystem().finished()));
    const std::string image = write("image.tar", savedImage().finished());
    Session session;
};

TEST_F(ArchiveCommand, TellsWhatIsInIt)
{
    EXPECT_EQ(session.run({"--wsl", "archive", good}), 0);
    EXPECT_THAT(session.out, HasSubstr("root file system\n"));
    EXPECT_THAT(session.out, HasSubstr("/bin/sh, amd64\n"));
    EXPECT_THAT(session.out, HasSubstr("all of it, 6 entries"));
    EXPECT_THAT(session.out, HasSubstr("ok       The distribution kelp_hub_R1 can be created from it.\n"));
    EXPECT_EQ(session.error, "");
    EXPECT_THAT(fakeLvm().calls, IsEmpty());
}

TEST_F(ArchiveCommand, TellsWhatIsWrongWithIt)
{
    EXPECT_EQ(session.run({"--wsl", "archive", image}), 1);
    EXPECT_THAT(session.out, HasSubstr("kelp_hub_R1:latest: linux/amd64, names a program to run\n"));
    EXPECT_THAT(session.out, HasSubstr("PROBLEM  The distribution kelp_hub_R1 cannot be created from it.\n"));
    EXPECT_THAT(session.out, HasSubstr("is a saved image for Docker"));
    EXPECT_THAT(session.error, HasSubstr("error: ARCHIVE_HAS_PROBLEMS\n"));
    EXPECT_EQ(session.run({"--docker", "archive", image}), 0);
    EXPECT_EQ(session.run({"--docker", "archive", image, "--name", "other"}), 1);
    EXPECT_EQ(session.run({"--docker", "archive", good}), 1);
    EXPECT_EQ(session.run({"--docker", "archive", good, "--root-fs"}), 0);
}

TEST_F(ArchiveCommand, SaysTheSameToPrograms)
{
    session.run({"--json", "--docker", "archive", image});
    const boost::json::value result = session.json().at("result");
    EXPECT_EQ(result.at("content"), "saved image");
    EXPECT_EQ(result.at("read"), "whole");
    EXPECT_EQ(result.at("images").at(0).at("names").at(0), "kelp_hub_R1:latest");
    session.run({"--json", "archive", write("cut.tar.gz", packed("gzip", rootFileSystem().finished()).substr(0, 100))});
    EXPECT_EQ(session.json().at("result").at("damage"), "cutOff");
    EXPECT_EQ(session.json().at("result").at("findings").at(0).at("identifier"), "ARCHIVE_CUT_OFF");
    EXPECT_EQ(identifier(), "ARCHIVE_HAS_PROBLEMS");
}

TEST_F(ArchiveCommand, WantsAFile)
{
    EXPECT_EQ(session.run({"archive"}), 2);
    EXPECT_EQ(session.run({"--json", "archive", good + ".gone"}), 1);
    EXPECT_EQ(session.json().at("result").at("findings").at(0).at("identifier"), "ARCHIVE_MISSING");
}

TEST_F(ArchiveCommand, NothingInItReachesTheTerminal)
{
    const std::string file = write("odd.tar", TarArchive().file("../\x1b[31m\n\xff").finished());
    EXPECT_EQ(session.run({"archive", file}), 1);
    EXPECT_THAT(session.out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(session.out, HasSubstr("../\\x1B[31m\n"));
}

TEST_F(ArchiveCommand, IsWhatSetupAndProvisionTakeALookAt)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"setup", image}, {"provision", "--archive", image, "--name", "kelp_hub_R1"}}) {
        std::vector<std::string> all = {"--json", "--wsl"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(session.run(all), 1);
        EXPECT_EQ(identifier(), "ARCHIVE_REFUSED");
        EXPECT_EQ(cause(), "ARCHIVE_IS_IMAGE");
    }
    EXPECT_THAT(fakeLvm().calls, IsEmpty());
    EXPECT_EQ(session.run({"--wsl", "setup", good}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("gateway setup [" + good + "]"));
}

TEST_F(ArchiveCommand, IsUsedAllTheSameWhenTheUserSaysSo)
{
    EXPECT_EQ(session.run({"--wsl", "setup", image, "--force"}), 0);
    EXPECT_EQ(session.run({"--wsl", "provision", "--archive", image, "--force"}), 0);
    EXPECT_EQ(fakeLvm().calls.size(), 2U);
    EXPECT_THAT(session.asked, IsEmpty());
}

TEST_F(ArchiveCommand, IsOfNoInterestWhereTheEnvironmentExists)
{
    session.answers["/windows/wsl.exe --list -q"] = {0, "kelp_hub_R1\n", {}};
    session.answers["/windows/wsl.exe -l -q"] = {0, "kelp_hub_R1\n", {}};
    EXPECT_EQ(session.run({"--wsl", "setup", image}), 0);
    session.answers["/usr/bin/docker image inspect --format {{.Id}} kelp_hub_R1"] = {0, "sha256:1\n", {}};
    EXPECT_EQ(session.run({"--docker", "setup", good}), 0);
    EXPECT_EQ(fakeLvm().calls.size(), 2U);
}

TEST_F(ArchiveCommand, IsOfNoInterestWhereTheRegistryMayHaveTheImage)
{
    const EnvironmentVariable pulls("USE_DOCKER_REPOSITORY", "1");
    EXPECT_EQ(session.run({"--docker", "setup", good}), 0);
    EXPECT_EQ(session.run({"--wsl", "setup", image}), 1);
}

TEST_F(ArchiveCommand, ThatIsNotThereIsTheLibrarysToTell)
{
    EXPECT_EQ(session.run({"setup", good + ".gone"}), 0);
    EXPECT_EQ(fakeLvm().calls.size(), 1U);
}

} // namespace
