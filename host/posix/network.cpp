#include "host/network.h"

#include "host/text.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>

namespace foundation::core::net {
namespace {

struct FreeAddresses {
    void operator()(ifaddrs* addresses) const noexcept { freeifaddrs(addresses); }
};
using Addresses = std::unique_ptr<ifaddrs, FreeAddresses>;

Addresses readAddresses()
{
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        throw std::system_error(errno, std::system_category(), "getifaddrs");
    }
    return Addresses(first);
}

std::string addressText(int family, const void* address)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, address, text.data(), text.size());
    return text.data();
}

// An address that is neither IPv4 nor IPv6 (such as a link-layer address) is none of ours.
std::optional<InetAddress> toInetAddress(const sockaddr* address)
{
    if (address == nullptr) { // uncovered: tunnels only
        return std::nullopt;
    }
    if (address->sa_family == AF_INET) {
        const in_addr& value = reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
        const bool loopback = (ntohl(value.s_addr) >> 24) == 127;
        return InetAddress(addressText(AF_INET, &value), 4, loopback);
    }
    if (address->sa_family == AF_INET6) {
        const in6_addr& value = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
        return InetAddress(addressText(AF_INET6, &value), 6, IN6_IS_ADDR_LOOPBACK(&value));
    }
    return std::nullopt;
}

struct Interface {
    std::string name;
    std::vector<InetAddress> addresses;
};

// getifaddrs gives one entry per address; an interface's first entry says where it stands in the order.
Interface& interfaceNamed(std::vector<Interface>& interfaces, const char* name)
{
    const auto known = std::find_if(interfaces.begin(), interfaces.end(),
                                    [name](const Interface& candidate) { return candidate.name == name; });
    return known != interfaces.end() ? *known : interfaces.emplace_back(Interface{name, {}});
}

} // namespace

std::vector<NetworkInterface> NetworkInterface::list()
{
    const Addresses addresses = readAddresses();
    std::vector<Interface> interfaces;
    for (const ifaddrs* entry = addresses.get(); entry != nullptr; entry = entry->ifa_next) {
        Interface& interface = interfaceNamed(interfaces, entry->ifa_name);
        if (std::optional<InetAddress> address = toInetAddress(entry->ifa_addr)) {
            interface.addresses.push_back(std::move(*address));
        }
    }
    std::vector<NetworkInterface> result;
    for (Interface& interface : interfaces) {
        const std::u16string name = text::cvt_utf8_ustring(interface.name);
        result.emplace_back(name, name, std::move(interface.addresses));
    }
    return result;
}

} // namespace foundation::core::net
