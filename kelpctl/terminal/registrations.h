// What WSL has written down about the distributions of this user. Chosen by CMake from windows/ and posix/.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelpctl {

struct Registration {
    // As it is registered, UTF-8.
    std::string name;
    // The file that its files are in; empty when it has none (WSL 1).
    std::filesystem::path disk;
    // Not being installed, removed or converted.
    bool installed = false;
};

// Those that can be read whole. Throws nothing: what cannot be read is not known.
std::vector<Registration> registrations();

struct OthersRegistration {
    std::string account;
    std::string name;
};

// Those of other accounts, as far as this one may read what was written down for them, and while they are logged on.
// May throw std::exception.
std::vector<OthersRegistration> registrationsOfOthers();

} // namespace kelpctl
