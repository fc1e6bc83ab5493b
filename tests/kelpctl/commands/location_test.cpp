// Where a distribution's disk is to lie.
#include "current_folder.h"
#include "fake_lvm.h"
#include "session.h"
#include "temporary_folder.h"

#include "host/configuration.h"
#include "host/files.h"

#include <boost/json/value.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

class Location : public testing::Test {
protected:
    ~Location() override { foundation::core::config::configure({}); }

    TemporaryFolder folder;
    Session session;
};

TEST_F(Location, IsTheHostsTemporaryFolderWhileTheLibraryWorks)
{
    std::u16string seen;
    fakeLvm().duringImport = [&seen] { seen = foundation::core::path::temp_directory_name(); };
    for (const char* command : {"setup", "provision"}) {
        seen.clear();
        EXPECT_EQ(session.run({command, "--location", folder.path().string() + "/"}), 0) << session.error;
        EXPECT_EQ(std::filesystem::path(seen), folder.path());
    }
}

TEST_F(Location, ThatIsRelativeIsMadeAbsolute)
{
    const CurrentFolder current(folder.path());
    std::filesystem::create_directory("disks");
    std::u16string seen;
    fakeLvm().duringImport = [&seen] { seen = foundation::core::path::temp_directory_name(); };
    EXPECT_EQ(session.run({"setup", "--location", "disks"}), 0) << session.error;
    EXPECT_EQ(std::filesystem::path(seen), folder.path() / "disks");
}

TEST_F(Location, ThatIsNoFolderStopsTheWorkBeforeItBegins)
{
    EXPECT_EQ(session.run({"setup", "--location", (folder.path() / "none").string(), "--json"}), 1);
    EXPECT_EQ(session.json().at("error").at("identifier"), "LOCATION_NOT_USABLE");
    EXPECT_EQ(std::string(session.json().at("error").at("arguments").at(0).as_string()),
              (folder.path() / "none").string());
    EXPECT_TRUE(fakeLvm().calls.empty());
}

TEST_F(Location, MeansNothingToDocker)
{
    EXPECT_EQ(session.run({"--docker", "setup", "--location", folder.path().string()}), 2);
    EXPECT_TRUE(fakeLvm().calls.empty());
}

} // namespace
