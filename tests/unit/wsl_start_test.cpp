// A distribution that is there: checked, and started when it has to be.
#include "host_fixture.h"

#include "wsl.h"

#include <chrono>
#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using foundation::core::net::InetAddress;

const Arguments startCommand = {wslPath, "-d", hub, "--exec", "~"};
const std::string slept = "sleep 100000 us";
const std::string emptyAndStopped =
    wslDetail("importFromTarIfNecessary: wslIPAddress is empty and distro is not running");

std::string addressLine(const std::string& address)
{
    return wslDetail("importFromTarIfNecessary: (1) wslIPAddress =  " + address);
}

const Events adapterQuery = {
    askedInterfaces,      "getFriendlyName (WSL)", "getDescription (WSL)",   "getInetAddresses (WSL)",
    "isLoopback 1.2.3.4", "getVersion 1.2.3.4",    "getHostAddress 1.2.3.4",
};

class WslStart : public HostTest {
protected:
    WslStart()
    {
        expectWslLookup();
        getExecutablePath();
        host().forgetEvents();
    }

    // The address becomes known with the given query, the first being 1; 0 means never.
    static void addressFromQuery(int number)
    {
        host().interfaces = [number, count = 0]() mutable -> Interfaces {
            ++count;
            if (number == 0 || count < number) {
                return {};
            }
            return {{u"(WSL)", u"Virtual", {InetAddress("1.2.3.4", 4, false)}}};
        };
    }

    // The hub distribution is registered, and `running` is what the second listing prints.
    static void expectStoppedHub(const std::string& running = "other\n")
    {
        expectListing(false, {0, "other\n" + hub + "\n", ""});
        expectListing(true, {0, running, ""});
    }

    // From the start to the end of the second listing.
    static Events present(const std::string& name)
    {
        return sequence({wslPathUsed(),
                         {wslDetail("importFromTarIfNecessary: wslPath = " + wslPath)},
                         name == hub ? Events{askedRelease} : Events{},
                         {wslDetail("importFromTarIfNecessary: localDistroName = " + name)},
                         listing(false, 0),
                         {wslDetail("importFromTarIfNecessary: kelp distro exists 1")},
                         listing(true, 0)});
    }

    static Events startedHub()
    {
        return sequence({{addressLine(""), emptyAndStopped}, wslPathUsed(), {ran(startCommand)}});
    }
};

TEST_F(WslStart, ARunningDistroNeedsOneAddressQueryAndNoStart)
{
    addressFromQuery(0);
    expectStoppedHub(hub + "\n");
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({present(hub), {askedInterfaces, addressLine("")}}));
}

TEST_F(WslStart, AStoppedDistroWithAKnownAddressIsNotStarted)
{
    addressFromQuery(1);
    expectStoppedHub();
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({present(hub), adapterQuery, {addressLine("1.2.3.4")}}));
}

TEST_F(WslStart, ARunningDistroWithAKnownAddressIsNotStarted)
{
    addressFromQuery(1);
    expectStoppedHub(hub);
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({present(hub), adapterQuery, {addressLine("1.2.3.4")}}));
}

TEST_F(WslStart, AStoppedDistroIsStartedAndItsAddressAwaitedThreeTimes)
{
    addressFromQuery(0);
    expectStoppedHub();
    host().expectRun(startCommand, {1, "ignored", "ignored"});
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({present(hub),
                           {askedInterfaces},
                           startedHub(),
                           {slept, askedInterfaces, slept, askedInterfaces, slept, askedInterfaces}}));
}

TEST_F(WslStart, WaitingEndsWithTheFirstRoundThatFindsTheAddress)
{
    addressFromQuery(2);
    expectStoppedHub();
    host().expectRun(startCommand);
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({present(hub), {askedInterfaces}, startedHub(), {slept}, adapterQuery}));
}

TEST_F(WslStart, WaitingEndsWithTheSecondRoundThatFindsTheAddress)
{
    addressFromQuery(3);
    expectStoppedHub();
    host().expectRun(startCommand);
    wslImportFromTarIfNecessary("", "");
    expectEvents(
        sequence({present(hub), {askedInterfaces}, startedHub(), {slept, askedInterfaces, slept}, adapterQuery}));
}

TEST_F(WslStart, TheRoundsTakeTheirTime)
{
    addressFromQuery(0);
    host().sleepsReally = true;
    expectStoppedHub();
    host().expectRun(startCommand);
    const auto start = std::chrono::steady_clock::now();
    wslImportFromTarIfNecessary("", "");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
}

TEST_F(WslStart, TheDefaultDistroIsStartedWhicheverWasAskedFor)
{
    addressFromQuery(2);
    expectListing(false, {0, "mine\n", ""});
    expectListing(true, {0, hub + "\n", ""});
    host().expectRun(startCommand);
    wslImportFromTarIfNecessary("", "mine");
    expectEvents(sequence({present("mine"),
                           {askedInterfaces, addressLine(""), emptyAndStopped},
                           wslPathUsed(),
                           {askedRelease, ran(startCommand), slept},
                           adapterQuery}));
}

TEST_F(WslStart, AFailingListOfRunningDistrosMeansStopped)
{
    addressFromQuery(2);
    expectListing(false, {0, hub + "\n", ""});
    expectListing(true, {1, hub + "\n", "none"});
    host().expectRun(startCommand);
    wslImportFromTarIfNecessary("", "");
    EXPECT_EQ(host().eventsLike(ran(startCommand)).size(), 1U);
}

TEST_F(WslStart, AnExceptionOfTheStartPassesThrough)
{
    expectStoppedHub();
    host().expectRun(startCommand, []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(wslImportFromTarIfNecessary("", ""), std::runtime_error);
}

TEST_F(WslStart, AnExceptionOfTheNetworkServicePassesThrough)
{
    host().interfaces = []() -> Interfaces { throw std::runtime_error("no interfaces"); };
    expectStoppedHub();
    EXPECT_THROW(wslImportFromTarIfNecessary("", ""), std::runtime_error);
}

TEST_F(WslStart, AnExceptionWhileWaitingPassesThrough)
{
    host().interfaces = [count = 0]() mutable -> Interfaces {
        if (++count == 2) {
            throw std::runtime_error("no interfaces");
        }
        return {};
    };
    expectStoppedHub();
    host().expectRun(startCommand);
    EXPECT_THROW(wslImportFromTarIfNecessary("", ""), std::runtime_error);
}

} // namespace
