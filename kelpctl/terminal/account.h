// Who runs kelpctl, and where. Chosen by CMake from windows/ and posix/.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kelpctl {

struct Account {
    // UTF-8, empty when the system does not tell.
    std::string name;
    // With the rights of an administrator.
    bool elevated = false;
    // The system's own account, under which services run.
    bool isSystem = false;
    // Windows: the session that the process belongs to; that of services is 0.
    std::optional<std::uint32_t> session;
};

// Throws nothing.
Account currentAccount();

} // namespace kelpctl
