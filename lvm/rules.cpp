#include "rules.h"

#include "files.h"

#include "host/files.h"

#include <cstring>

namespace orb::lvm::detail {
namespace {

namespace files = foundation::core::path;
using foundation::core::net::InetAddress;
using foundation::core::net::NetworkInterface;

// The host product ships programs of its own in such a folder; they are never the user's Docker client.
constexpr char hostFolder[] = "bin\\win64";

} // namespace

bool isOne(const char* value)
{
    return value != nullptr && std::strcmp(value, "1") == 0;
}

bool selectsWsl(const char* value)
{
    return value == nullptr || isOne(value);
}

std::string getWslAdapterAddress(const NetworkInterface& nic)
{
    const std::u16string friendlyName = nic.getFriendlyName();
    const std::u16string description = nic.getDescription();
    if (friendlyName.find(u"(WSL)") == std::u16string::npos || description.find(u"Virtual") == std::u16string::npos) {
        return {};
    }
    for (const InetAddress& address : nic.getInetAddresses()) {
        if (!address.isLoopback() && address.getVersion() == 4) {
            return address.getHostAddress();
        }
    }
    return {};
}

// Each test converts the path afresh.
ClientKind clientKindOf(const std::string& path)
{
    if (path.find(hostFolder) != std::string::npos) {
        return ClientKind::hostsOwn;
    }
    if (!files::exists(toPath(path))) {
        return ClientKind::missing;
    }
    if (files::is_link(toPath(path))) {
        return ClientKind::link;
    }
    return files::is_regular_file(toPath(path)) ? ClientKind::file : ClientKind::noFile;
}

} // namespace orb::lvm::detail
