#pragma once

#include <filesystem>
#include <vector>

// What differs between the systems.
namespace where {

using Path = std::filesystem::path;
using Text = Path::string_type;

std::vector<Text> patternsFrom(int argc, char** argv);

// Empty where the variable is not set.
Text environment(const char* name);

// The file that STAND_IN_CALLS, a Linux path, names; empty where it is not set.
Path callsFile();

Path::value_type listSeparator();

// The endings that a name may be short of.
std::vector<Text> optionalEndings();

// To be able to print CR LF as it is.
void prepareOutput();
void printPath(const Path& path);

} // namespace where
