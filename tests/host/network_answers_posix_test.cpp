// What becomes of the interfaces that the system tells of. The program's own getifaddrs gives them, in the place of the
// C library's.
#include "host/network.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <deque>
#include <string>

namespace {

// The list that the system gives: one entry per address, those of an interface not always together.
class Answer {
public:
    void add(const char* name, const char* address)
    {
        Entry& entry = entries_.emplace_back();
        entry.name = name;
        entry.item.ifa_name = entry.name.data();
        entry.item.ifa_addr = reinterpret_cast<sockaddr*>(&entry.address);
        if (::inet_pton(AF_INET, address, &entry.v4().sin_addr) == 1) {
            entry.v4().sin_family = AF_INET;
        } else if (::inet_pton(AF_INET6, address, &entry.v6().sin6_addr) == 1) {
            entry.v6().sin6_family = AF_INET6;
        } else {
            // An address of the wire, as each interface has one.
            entry.item.ifa_addr->sa_family = AF_PACKET;
        }
        if (entries_.size() > 1) {
            entries_[entries_.size() - 2].item.ifa_next = &entry.item;
        }
    }
    void addWithoutAddress(const char* name)
    {
        add(name, "");
        entries_.back().item.ifa_addr = nullptr;
    }

    ifaddrs* first() { return entries_.empty() ? nullptr : &entries_.front().item; }

private:
    struct Entry {
        ifaddrs item{};
        std::string name;
        sockaddr_storage address{};

        sockaddr_in& v4() { return reinterpret_cast<sockaddr_in&>(address); }
        sockaddr_in6& v6() { return reinterpret_cast<sockaddr_in6&>(address); }
    };

    std::deque<Entry> entries_;
};

Answer answer;

} // namespace

int getifaddrs(ifaddrs** first) noexcept
{
    *first = answer.first();
    return 0;
}

void freeifaddrs(ifaddrs* /*first*/) noexcept {}

namespace {

using namespace foundation::core::net;

// An interface as text: "name: address version, ...", loopback addresses with a star.
std::string described(const NetworkInterface& interface)
{
    const std::u16string name = interface.getFriendlyName();
    std::string text(name.begin(), name.end());
    for (const InetAddress& address : interface.getInetAddresses()) {
        text += " " + address.getHostAddress() + "/" + std::to_string(address.getVersion());
        text += address.isLoopback() ? "*" : "";
    }
    return text;
}

TEST(NetworkAnswers, EachInterfaceHasAllItsAddressesInTheirOrder)
{
    answer = {};
    answer.add("lo", "wire");
    answer.add("eth0", "wire");
    answer.addWithoutAddress("tun0");
    answer.add("lo", "127.0.0.1");
    answer.add("eth0", "10.0.0.2");
    answer.add("lo", "::1");
    answer.add("eth0", "fe80::1");
    answer.add("wsl", "172.20.0.1");
    answer.add("eth0", "10.0.0.1");
    std::vector<std::string> found;
    for (const NetworkInterface& interface : NetworkInterface::list()) {
        found.push_back(described(interface));
        EXPECT_EQ(interface.getDescription(), interface.getFriendlyName());
    }
    EXPECT_EQ(found, (std::vector<std::string>{"lo 127.0.0.1/4* ::1/6*", "eth0 10.0.0.2/4 fe80::1/6 10.0.0.1/4", "tun0",
                                               "wsl 172.20.0.1/4"}));
}

TEST(NetworkAnswers, TheWholeOf127AndOneAddressOfVersionSixAreLoopback)
{
    answer = {};
    for (const char* address : {"127.0.0.0", "127.255.255.254", "126.255.255.255", "128.0.0.1", "0.0.0.127", "::1",
                                "::", "::2", "::ffff:127.0.0.1", "1::1", "fe80::1"}) {
        answer.add("x", address);
    }
    std::string loopbacks;
    for (const InetAddress& address : NetworkInterface::list().at(0).getInetAddresses()) {
        loopbacks += address.isLoopback() ? address.getHostAddress() + " " : "";
    }
    EXPECT_EQ(loopbacks, "127.0.0.0 127.255.255.254 ::1 ");
}

TEST(NetworkAnswers, NoInterfacesAreAnAnswer)
{
    answer = {};
    EXPECT_TRUE(NetworkInterface::list().empty());
}

} // namespace
