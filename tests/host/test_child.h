// The program that the process service's tests run: its first argument says what it does.
#pragma once

#include <optional>
#include <string>
#include <vector>

// The program itself; the arguments are UTF-8 and begin with the program's name.
int testChild(const std::vector<std::string>& arguments);

// The few things it does in each system's own way.

// Output is written as it is, without a change of line ends.
void useBinaryStreams();
std::optional<std::string> variable(const std::string& name);
std::string currentFolder();
// The size of the file that is open under this handle or descriptor, -1 when there is none.
long long openFileSize(const std::string& handle);
// Exits with all 32 bits, where the system has them.
[[noreturn]] void exitWith(long long status);
// Starts this program again with these arguments, does not wait, and lets it inherit the standard streams.
void startAgain(const std::vector<std::string>& arguments);
// Something that only this system has. Gives nothing when the mode is unknown.
std::optional<int> systemMode(const std::vector<std::string>& arguments);
