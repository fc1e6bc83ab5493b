#include "host/network.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace foundation::core::net;

TEST(Network, TheMachineHasALoopbackInterface)
{
    const std::vector<NetworkInterface> interfaces = NetworkInterface::list();
    const bool found = std::any_of(interfaces.begin(), interfaces.end(), [](const NetworkInterface& interface) {
        const std::vector<InetAddress> addresses = interface.getInetAddresses();
        return std::any_of(addresses.begin(), addresses.end(), [](const InetAddress& address) {
            return address.isLoopback() && address.getVersion() == 4 && address.getHostAddress() == "127.0.0.1";
        });
    });
    EXPECT_TRUE(found);
}

TEST(Network, EveryInterfaceHasANameAndADescription)
{
    for (const NetworkInterface& interface : NetworkInterface::list()) {
        EXPECT_FALSE(interface.getFriendlyName().empty());
        EXPECT_FALSE(interface.getDescription().empty());
    }
}

TEST(Network, AddressesAreTextOfTheirVersion)
{
    for (const NetworkInterface& interface : NetworkInterface::list()) {
        for (const InetAddress& address : interface.getInetAddresses()) {
            const char mark = address.getVersion() == 4 ? '.' : ':';
            EXPECT_NE(address.getHostAddress().find(mark), std::string::npos) << address.getHostAddress();
        }
    }
}

TEST(Network, AnInterfaceKeepsTheOrderOfItsAddresses)
{
    const NetworkInterface interface(u"name", u"description", {{"fe80::1", 6, false}, {"10.0.0.1", 4, false}});
    EXPECT_EQ(interface.getFriendlyName(), u"name");
    EXPECT_EQ(interface.getDescription(), u"description");
    ASSERT_EQ(interface.getInetAddresses().size(), 2U);
    EXPECT_EQ(interface.getInetAddresses()[0].getHostAddress(), "fe80::1");
    EXPECT_EQ(interface.getInetAddresses()[1].getVersion(), 4U);
}

} // namespace
