// The host's address on the WSL network.
#include "host_fixture.h"

#include "rules.h"
#include "wsl.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using foundation::core::net::InetAddress;
using foundation::core::net::NetworkInterface;

const std::u16string wslName = u"vEthernet (WSL)";
const std::u16string wslDescription = u"Hyper-V Virtual Ethernet Adapter";

class Network : public HostTest {
protected:
    static std::string addressOf(const std::u16string& name, const std::u16string& description)
    {
        return getWslAdapterAddress(NetworkInterface(name, description, {InetAddress("172.1.2.3", 4, false)}));
    }

    static void setInterfaces(const Interfaces& interfaces)
    {
        host().interfaces = [interfaces] { return interfaces; };
    }
};

TEST_F(Network, TheFirstIPv4AddressOfTheAdapterIsTaken)
{
    setInterfaces({{wslName,
                    wslDescription,
                    {InetAddress("fe80::1", 6, false), InetAddress("172.20.0.1", 4, false),
                     InetAddress("172.20.0.2", 4, false)}}});
    EXPECT_EQ(getWslIpAddress(), "172.20.0.1");
    expectEvents({askedInterfaces, "getFriendlyName vEthernet (WSL)", "getDescription vEthernet (WSL)",
                  "getInetAddresses vEthernet (WSL)", "isLoopback fe80::1", "getVersion fe80::1",
                  "isLoopback 172.20.0.1", "getVersion 172.20.0.1", "getHostAddress 172.20.0.1"});
}

TEST_F(Network, NameAndDescriptionMustBothMatch)
{
    EXPECT_EQ(addressOf(u"(WSL)", u"Virtual"), "172.1.2.3");
    EXPECT_EQ(addressOf(u"a(WSL)b", u"aVirtualb"), "172.1.2.3");
    EXPECT_EQ(addressOf(u"WSL", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"vEthernet (WSL (Hyper-V firewall))", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"(WSL", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"WSL)", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"(WSL)", u"Virtua"), "");
    EXPECT_EQ(addressOf(u"(WSL)", u"irtual"), "");
    EXPECT_EQ(addressOf(u"(WSL)", u""), "");
    EXPECT_EQ(addressOf(u"", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"", u""), "");
}

TEST_F(Network, SwappedTextsDoNotMatch)
{
    EXPECT_EQ(addressOf(u"Virtual", u"(WSL)"), "");
    EXPECT_EQ(addressOf(u"(WSL) Virtual", u"other"), "");
    EXPECT_EQ(addressOf(u"other", u"(WSL) Virtual"), "");
}

TEST_F(Network, CaseCounts)
{
    EXPECT_EQ(addressOf(u"(wsl)", u"Virtual"), "");
    EXPECT_EQ(addressOf(u"(WSL)", u"virtual"), "");
    EXPECT_EQ(addressOf(u"(WSL)", u"VIRTUAL"), "");
}

TEST_F(Network, BothTextsAreFetchedOnceWhateverTheyAre)
{
    EXPECT_EQ(addressOf(u"other", u"other"), "");
    expectEvents({"getFriendlyName other", "getDescription other"});
    EXPECT_EQ(addressOf(u"(WSL)", u"other"), "");
    expectEvents({"getFriendlyName (WSL)", "getDescription (WSL)"});
}

TEST_F(Network, ALoopbackAddressIsSkippedWithoutAskingItsVersion)
{
    setInterfaces({{u"(WSL)", u"Virtual", {InetAddress("127.0.0.1", 4, true)}}});
    EXPECT_EQ(getWslIpAddress(), "");
    expectEvents({askedInterfaces, "getFriendlyName (WSL)", "getDescription (WSL)", "getInetAddresses (WSL)",
                  "isLoopback 127.0.0.1"});
}

TEST_F(Network, AnAddressAfterALoopbackOneIsFound)
{
    setInterfaces({{u"(WSL)", u"Virtual", {InetAddress("127.0.0.1", 4, true), InetAddress("10.0.0.1", 4, false)}}});
    EXPECT_EQ(getWslIpAddress(), "10.0.0.1");
}

TEST_F(Network, OnlyVersionFourCounts)
{
    for (const std::uint32_t version : {0U, 3U, 5U, 6U, 40U, 0x80000004U}) {
        setInterfaces({{u"(WSL)", u"Virtual", {InetAddress("address", version, false)}}});
        EXPECT_EQ(getWslIpAddress(), "") << version;
    }
}

TEST_F(Network, AnAdapterThatDoesNotMatchIsFollowedByTheNext)
{
    setInterfaces({{u"(WSL)", u"Ethernet", {InetAddress("1.1.1.1", 4, false)}},
                   {u"(WSL) 2", u"Virtual", {}},
                   {u"(WSL) 3", u"Virtual", {InetAddress("::2", 6, false)}},
                   {u"(WSL) 4", u"Virtual", {InetAddress("4.4.4.4", 4, false)}}});
    EXPECT_EQ(getWslIpAddress(), "4.4.4.4");
    expectEvents({askedInterfaces, "getFriendlyName (WSL)", "getDescription (WSL)", "getFriendlyName (WSL) 2",
                  "getDescription (WSL) 2", "getInetAddresses (WSL) 2", "getFriendlyName (WSL) 3",
                  "getDescription (WSL) 3", "getInetAddresses (WSL) 3", "isLoopback ::2", "getVersion ::2",
                  "getFriendlyName (WSL) 4", "getDescription (WSL) 4", "getInetAddresses (WSL) 4", "isLoopback 4.4.4.4",
                  "getVersion 4.4.4.4", "getHostAddress 4.4.4.4"});
}

TEST_F(Network, AnAddressWithoutATextIsNone)
{
    setInterfaces({{u"(WSL) 1", u"Virtual", {InetAddress("", 4, false), InetAddress("1.1.1.1", 4, false)}},
                   {u"(WSL) 2", u"Virtual", {InetAddress("2.2.2.2", 4, false)}}});
    EXPECT_EQ(getWslIpAddress(), "2.2.2.2");
}

TEST_F(Network, LaterAdaptersAreNotLookedAt)
{
    setInterfaces({{u"(WSL) 1", u"Virtual", {InetAddress("1.1.1.1", 4, false)}},
                   {u"(WSL) 2", u"Virtual", {InetAddress("2.2.2.2", 4, false)}}});
    EXPECT_EQ(getWslIpAddress(), "1.1.1.1");
    EXPECT_TRUE(host().eventsLike("getFriendlyName (WSL) 2").empty());
}

TEST_F(Network, NoAdapterNoAddress)
{
    setInterfaces({});
    EXPECT_EQ(getWslIpAddress(), "");
    expectEvents({askedInterfaces});
}

TEST_F(Network, AnExceptionOfTheServicePassesThrough)
{
    host().interfaces = []() -> Interfaces { throw std::runtime_error("no interfaces"); };
    EXPECT_THROW(getWslIpAddress(), std::runtime_error);
}

} // namespace
