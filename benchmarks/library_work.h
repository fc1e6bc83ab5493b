// The library's own work on what programs print and are given, without the programs: the same for the benchmarks and for
// the instruction counts.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace benchmarks {

// From now on every program that the library runs prints this and succeeds.
void setProgramOutput(std::string output);

// What "wsl.exe --list -q" prints for so many distributions: UTF-16LE.
std::string distributionListing(std::size_t count);

// What "docker images --format {{.Repository}}" prints for so many images, each with a registry and a path.
std::string repositoryListing(std::size_t count);

// So many variables, entered in the order of their names.
std::map<std::string, std::string> variables(std::size_t count);

// The work; each gives the size of what it made.
std::size_t listDistributions();
std::size_t listRepositories();
// For the backend that USE_WSL names. Takes back what it adds to the variables.
std::size_t prepareEnvironment(std::map<std::string, std::string>& environment);

// One log statement with a text and a number.
void writeLogStatement(int value);
// Switches the level of that statement.
void setLogging(bool on);

} // namespace benchmarks
