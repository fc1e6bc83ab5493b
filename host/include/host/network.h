// The network-interface service: the machine's adapters and their addresses, in the system's enumeration order.
// Values are snapshots: they own what they hold and do not change. Any thread.
#pragma once

#include "host/export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace foundation::core::net {

class KORVANE_HOST_API InetAddress {
public:
    InetAddress(std::string text, std::uint32_t version, bool loopback);

    bool isLoopback() const;
    // 4 or 6.
    std::uint32_t getVersion() const;
    // Dotted decimal for IPv4, RFC 5952 text for IPv6.
    std::string getHostAddress() const;

private:
    std::string text_;
    std::uint32_t version_;
    bool loopback_;
};

class KORVANE_HOST_API NetworkInterface {
public:
    NetworkInterface(std::u16string friendlyName, std::u16string description, std::vector<InetAddress> addresses);

    // Every interface of the machine. Throws std::system_error when the system cannot tell.
    static std::vector<NetworkInterface> list();

    // The name that the system's network settings show.
    std::u16string getFriendlyName() const;
    // The adapter's driver or device text. Linux has none and gives the name again.
    std::u16string getDescription() const;
    std::vector<InetAddress> getInetAddresses() const;

private:
    std::u16string friendlyName_;
    std::u16string description_;
    std::vector<InetAddress> addresses_;
};

} // namespace foundation::core::net
