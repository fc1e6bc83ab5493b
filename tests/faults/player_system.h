// What the programs of the simulated machine need of the system they run on.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Standard output and error without line-end conversion from now on.
void makeStreamsBinary();

// The program's own file.
std::filesystem::path ownPath();

// This process, and the one whose number is given.
long long ownProcess();
[[noreturn]] void killSelf();
void killProcess(long long process);

// Starts `program` with one argument and with this program's standard streams, and does not wait for it. Gives its
// number.
long long startBeside(const std::filesystem::path& program, const std::string& argument);

// Ends with any status that the system has.
[[noreturn]] void exitWithStatus(long long status);
