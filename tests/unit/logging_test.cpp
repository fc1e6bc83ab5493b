// Whole operations while channels are off, or while only one of the two levels is on.
#include "host_fixture.h"

#include "frame.h"
#include "orb/lvm.h"
#include "wsl.h"

namespace {

using namespace fake;
using namespace orb::lvm;

class LoggingWsl : public HostTest {
protected:
    LoggingWsl()
    {
        setVariable("KELP_ADDITIONAL_LOGGING", "1");
        // The folder cannot be made, so every message of the import is reached.
        host().temporaryName = wide(folder.makeFile("file") + "/below");
    }

    // An import that fails, then a removal that fails.
    void importAndRemove()
    {
        expectWslLookup();
        expectListing(false, {1, "", "why"});
        host().expectRun({wslPath, "--import", "mine", folder.entry("file/below"), "archive", "--version", "2"},
                         {1, "out", "err"});
        EXPECT_THROW(importFromTarIfNecessary("archive", "mine", false), foundation::core::except::IMsgIDException);
        host().expectRun({wslPath, "--unregister", "mine"}, {1, "out", "err"});
        clearDistroImage("mine");
    }

    static void setMasks(std::uint32_t channels, std::uint32_t parent)
    {
        for (const char* channel : {"orb:lvm:common", "orb:lvm:docker", "orb:lvm:wsl"}) {
            host().mask(channel) = channels;
        }
        host().mask("orb:lvm") = parent;
    }

    TestFolder folder;
};

TEST_F(LoggingWsl, NothingIsFormattedWhileAllChannelsAreOff)
{
    setMasks(0, 0);
    importAndRemove();
    EXPECT_EQ(host().openedRecords, 0);
    EXPECT_EQ(host().streamedRecords, 0);
    EXPECT_TRUE(host().eventsLike("log").empty());
}

TEST_F(LoggingWsl, OnlyErrorsAreWrittenWhileDetailIsOff)
{
    setMasks(errorBit, detailBit | errorBit);
    importAndRemove();
    const Events logged = host().eventsLike("log");
    ASSERT_EQ(logged.size(), 6U);
    EXPECT_EQ(logged[0], wslError("getDistros: status = 1; why"));
    EXPECT_EQ(host().eventsLike("log orb:lvm:wsl 512").size(), 4U);
    EXPECT_EQ(host().eventsLike("log orb:lvm:common 512").size(), 2U);
}

TEST_F(LoggingWsl, NoErrorIsWrittenWhileErrorsAreOff)
{
    setMasks(detailBit, detailBit | errorBit);
    importAndRemove();
    EXPECT_FALSE(host().eventsLike("log").empty());
    EXPECT_EQ(host().eventsLike("log orb:lvm:wsl 8").size() + host().eventsLike("log orb:lvm:common 8").size(),
              host().eventsLike("log").size());
}

TEST_F(LoggingWsl, EverythingGoesToTheParentWhileTheChannelsAreOff)
{
    setMasks(0, detailBit | errorBit);
    importAndRemove();
    EXPECT_EQ(host().eventsLike("log orb:lvm 512").size(), 6U);
    EXPECT_EQ(host().eventsLike("log orb:lvm 8").size() + 6U, host().eventsLike("log").size());
}

class LoggingDocker : public HostTest {
protected:
    // The one operation that logs on the channel.
    static void provisionWithoutClient()
    {
        host().expectRun({"where", "docker.exe"}, {1, "", ""});
        EXPECT_THROW(importFromTarIfNecessary("", "", false), foundation::core::except::IMsgIDException);
    }

    LoggingDocker() { setVariable("USE_WSL", "0"); }
};

TEST_F(LoggingDocker, FollowsTheMaskOfItsChannel)
{
    host().mask("orb:lvm:docker") = errorBit;
    provisionWithoutClient();
    EXPECT_EQ(host().eventsLike("log"), Events{dockerError("importFromTarIfNecessary: dockerPath doesn't exist")});
    host().forgetEvents();
    host().mask("orb:lvm:docker") = 0;
    host().mask("orb:lvm") = errorBit;
    provisionWithoutClient();
    EXPECT_EQ(host().eventsLike("log"), Events{"log orb:lvm 512: importFromTarIfNecessary: dockerPath doesn't exist"});
    host().forgetEvents();
    host().mask("orb:lvm") = 0;
    provisionWithoutClient();
    EXPECT_TRUE(host().eventsLike("log").empty());
}

} // namespace
