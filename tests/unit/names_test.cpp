// Release-qualified names and the archive folder.
#include "host_fixture.h"

#include "frame.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm;

class Names : public HostTest {};

TEST_F(Names, TheReleaseFollowsAnUnderscore)
{
    EXPECT_EQ(addKVRelease("kelp_hub"), "kelp_hub_R9");
    EXPECT_EQ(addKVRelease("other name"), "other name_R9");
}

TEST_F(Names, AnEmptyNameIsNotInspected)
{
    EXPECT_EQ(addKVRelease(""), "_R9");
}

TEST_F(Names, AnEmptyReleaseIsStillARelease)
{
    host().release = [] { return ""; };
    EXPECT_EQ(addKVRelease("name"), "name_");
}

TEST_F(Names, TheReleaseIsAskedForOnce)
{
    addKVRelease("a");
    host().release = [] { return "R10"; };
    EXPECT_EQ(addKVRelease("b"), "b_R9");
    expectEvents({askedRelease});
}

TEST_F(Names, AMissingReleaseIsKeptToo)
{
    host().release = [] { return nullptr; };
    EXPECT_EQ(addKVRelease("kelp_hub"), "kelp_hub");
    host().release = [] { return "R10"; };
    EXPECT_EQ(addKVRelease("kelp_hub"), "kelp_hub");
    EXPECT_EQ(addKVRelease(""), "");
    expectEvents({askedRelease});
}

TEST_F(Names, TheHubTagDoublesTheStem)
{
    EXPECT_EQ(detail::hubTag(), "kelp_hubkelp_hub_R9");
    EXPECT_EQ(detail::hubTag(), "kelp_hubkelp_hub_R9");
    expectEvents({askedRelease});
}

TEST_F(Names, TheHubTagWithoutAReleaseIsTheStemTwice)
{
    host().release = [] { return nullptr; };
    EXPECT_EQ(detail::hubTag(), "kelp_hubkelp_hub");
}

TEST_F(Names, TheStemIsTheDefaultContainerName)
{
    EXPECT_STREQ(hubName, "kelp_hub");
}

class TarsDirectory : public HostTest {};

TEST_F(TarsDirectory, FiveComponentsAreJoinedToTheNativeRoot)
{
    EXPECT_EQ(getContainerTarsDirectory(), u"native:root/toolbox/shared/kavori/kelp/tar_files");
    expectEvents(tarsDirectoryLookup());
}

TEST_F(TarsDirectory, IsTheSameObjectAtEachCall)
{
    const std::u16string& first = getContainerTarsDirectory();
    host().forgetEvents();
    host().nativeForm = u"elsewhere";
    const std::u16string& second = getContainerTarsDirectory();
    EXPECT_EQ(&first, &second);
    EXPECT_EQ(second, u"native:root/toolbox/shared/kavori/kelp/tar_files");
    expectEvents({});
}

TEST_F(TarsDirectory, AnEmptyRootIsNotConverted)
{
    host().installPath = [] { return foundation::core::path::Pathname{}; };
    EXPECT_EQ(getContainerTarsDirectory(), u"toolbox/shared/kavori/kelp/tar_files");
    expectEvents({"get_install_path", "concatenate_pathname |0 toolbox 1", "concatenate_pathname toolbox|1 shared 1",
                  "concatenate_pathname toolbox/shared|1 kavori 1",
                  "concatenate_pathname toolbox/shared/kavori|1 kelp 1",
                  "concatenate_pathname toolbox/shared/kavori/kelp|1 tar_files 1"});
}

TEST_F(TarsDirectory, AFailureIsNotKept)
{
    host().installPath = []() -> foundation::core::path::Pathname { throw std::runtime_error("no root"); };
    EXPECT_THROW(getContainerTarsDirectory(), std::runtime_error);
    host().installPath = nullptr;
    EXPECT_EQ(getContainerTarsDirectory(), u"native:root/toolbox/shared/kavori/kelp/tar_files");
}

} // namespace
