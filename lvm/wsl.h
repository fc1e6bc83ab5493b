// The WSL backend.
#pragma once

#include <string>
#include <vector>

namespace orb::lvm::detail {

// The path of wsl.exe: the first candidate of the system's look-up that answers "-v" with status 0, else the place
// where Windows keeps it. Searched for until it is known, and then kept for the process; threads that ask meanwhile
// search too, and get what was found first. Only a look-up command that cannot be run makes it throw.
std::string check_possible_executables();

// The path, or the place where Windows keeps wsl.exe when it is empty.
std::string orFallback(std::string path);

// What check_possible_executables() found, logged at each call. Every WSL command line begins with it.
std::string getExecutablePath();

// The names of the registered distributions, or of those that run, in the order of wsl.exe. A listing that fails is
// logged and gives an empty list.
std::vector<std::string> getDistros(bool onlyRunning);

// The host's IPv4 address on the WSL network, empty when there is none.
std::string getWslIpAddress();

// The argument vector that runs a program inside the hub distribution.
std::vector<std::string> wslArgumentsPrefix();

// Makes sure that the distribution `imageName` (empty: the hub's) exists, from the archive `tarPath` (empty: the one
// in the install tree), and that it is up. Throws WSL_CANNOT_IMPORT_TAR_FILE.
void wslImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName);

} // namespace orb::lvm::detail
