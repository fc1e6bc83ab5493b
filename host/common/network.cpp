#include "host/network.h"

#include <utility>

namespace foundation::core::net {

InetAddress::InetAddress(std::string text, std::uint32_t version, bool loopback)
    : text_(std::move(text)), version_(version), loopback_(loopback)
{
}

bool InetAddress::isLoopback() const
{
    return loopback_;
}

std::uint32_t InetAddress::getVersion() const
{
    return version_;
}

std::string InetAddress::getHostAddress() const
{
    return text_;
}

NetworkInterface::NetworkInterface(std::u16string friendlyName, std::u16string description,
                                   std::vector<InetAddress> addresses)
    : friendlyName_(std::move(friendlyName)), description_(std::move(description)), addresses_(std::move(addresses))
{
}

std::u16string NetworkInterface::getFriendlyName() const
{
    return friendlyName_;
}

std::u16string NetworkInterface::getDescription() const
{
    return description_;
}

std::vector<InetAddress> NetworkInterface::getInetAddresses() const
{
    return addresses_;
}

} // namespace foundation::core::net
