// scripts/hub-rootfs, which packs the root file system that tests import.
#include "wsl_test.h"

class HubRootfs : public WslTest {
protected:
    Outcome pack(const std::string& name)
    {
        return runProgram({HUB_ROOTFS_SCRIPT, {(folder.path() / name).string()}, {}, "", folder.path()});
    }

    std::string packed(const std::string& name)
    {
        EXPECT_EQ(pack(name).status, 0);
        return readFile(folder.path() / name);
    }
};

TEST_F(HubRootfs, GivesTheSameBytesEachTime)
{
    for (const char* ending : {".tar", ".tar.gz", ".tar.xz", ".tar.bz2"}) {
        const std::string name = ending;
        const std::string first = packed("a" + name);
        EXPECT_FALSE(first.empty());
        EXPECT_TRUE(first == packed("b" + name)) << name;
    }
}

TEST_F(HubRootfs, CanBeImportedInEachFormat)
{
    for (const char* ending : {".tar", ".tar.gz", ".tar.xz", ".tar.bz2"}) {
        const std::string name = "a" + std::string(ending);
        pack(name);
        EXPECT_THAT(wsl({"--import", name, folderOf(name).string(), (folder.path() / name).string()}),
                    succeedsWith(success));
        EXPECT_THAT(wsl({"-d", name, "--exec", "cat", "/etc/hostname"}), succeedsWith("hub\n"));
    }
}

TEST_F(HubRootfs, HubServiceSaysWhatReachedIt)
{
    importAs("Hub");
    environment["GREETING"] = "good day";
    environment["LD_LIBRARY_PATH"] = "/opt/vrun/korvane/lib";
    environment["WSLENV"] = "GREETING/u:LD_LIBRARY_PATH/u";
    EXPECT_THAT(inHub({"/opt/vrun/korvane/bin/hub", "one", "two"}),
                succeedsWith(testing::StartsWith("hub: GREETING=good day\n"
                                                 "hub: LD_LIBRARY_PATH=/opt/vrun/korvane/lib\n"
                                                 "hub: arguments: one two\n"
                                                 "hub: system: Linux ")));
}

TEST_F(HubRootfs, OtherNamesAreRefused)
{
    EXPECT_EQ(pack("a.zip").status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.zip"));
}
