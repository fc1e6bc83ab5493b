#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace stand_in {

using Variables = std::vector<std::pair<std::string, std::string>>;

// What WSLENV hands over to Linux, from the environment of this process.
Variables variablesOfWslenv(std::string_view wslenv);

// The user inside that programs run as, as the root file system's own /etc/passwd has it.
struct User {
    std::string name;
    unsigned number = 0;
    unsigned group = 0;
    std::string home;
    std::string shell;
};

// The whole environment of a Linux program.
Variables linuxEnvironment(const User& user, std::string_view distribution);

} // namespace stand_in
