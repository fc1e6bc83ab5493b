#include "host/network.h"

#include "system_error.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace foundation::core::net {
namespace {

// The adapters, in a buffer that grows until they fit: more may appear between two calls.
std::vector<std::byte> readAdapters()
{
    constexpr ULONG flags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
    ULONG size = 16 * 1024;
    while (true) {
        std::vector<std::byte> buffer(size);
        const auto adapters = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data());
        const ULONG code = GetAdaptersAddresses(AF_UNSPEC, flags, nullptr, adapters, &size);
        if (code == ERROR_SUCCESS) {
            return buffer;
        }
        // No adapter has an address, or one that is new is about to get its own.
        if (code == ERROR_NO_DATA || code == ERROR_ADDRESS_NOT_ASSOCIATED) {
            return {};
        }
        if (code != ERROR_BUFFER_OVERFLOW) {
            throw system::SystemError(code, "GetAdaptersAddresses");
        }
    }
}

std::string addressText(int family, const void* address)
{
    char text[INET6_ADDRSTRLEN] = {};
    inet_ntop(family, address, text, sizeof text);
    return text;
}

std::optional<InetAddress> toInetAddress(const sockaddr* address)
{
    if (address->sa_family == AF_INET) {
        const in_addr& value = reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
        const bool loopback = (ntohl(value.s_addr) >> 24) == 127;
        return InetAddress(addressText(AF_INET, &value), 4, loopback);
    }
    if (address->sa_family == AF_INET6) {
        const in6_addr& value = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
        return InetAddress(addressText(AF_INET6, &value), 6, IN6_IS_ADDR_LOOPBACK(&value) != 0);
    }
    return std::nullopt;
}

std::vector<InetAddress> addressesOf(const IP_ADAPTER_ADDRESSES& adapter)
{
    std::vector<InetAddress> result;
    for (const IP_ADAPTER_UNICAST_ADDRESS* entry = adapter.FirstUnicastAddress; entry != nullptr; entry = entry->Next) {
        if (std::optional<InetAddress> address = toInetAddress(entry->Address.lpSockaddr)) {
            result.push_back(std::move(*address));
        }
    }
    return result;
}

std::u16string toUstring(const wchar_t* text)
{
    const std::wstring wide(text);
    return {wide.begin(), wide.end()};
}

} // namespace

std::vector<NetworkInterface> NetworkInterface::list()
{
    const std::vector<std::byte> buffer = readAdapters();
    std::vector<NetworkInterface> result;
    const auto first = buffer.empty() ? nullptr : reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(buffer.data());
    for (const IP_ADAPTER_ADDRESSES* adapter = first; adapter != nullptr; adapter = adapter->Next) {
        result.emplace_back(toUstring(adapter->FriendlyName), toUstring(adapter->Description), addressesOf(*adapter));
    }
    return result;
}

} // namespace foundation::core::net
