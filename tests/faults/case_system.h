// What a case needs of the system it runs on.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

// What this process holds open: descriptors or handles.
std::size_t openHandles();

// Whether the process runs a program of the folder or of one below it. The system gives the numbers of ended processes
// to others.
bool isRunning(long long process, const std::filesystem::path& folder);

// How many threads this process has; 0 where it cannot be told.
std::size_t threadCount();

// From now on processes that lose their parent become ours.
void adoptOrphans();

// Takes note of the end of every child that has ended, and tells how many are left.
std::size_t remainingChildren();

// Whether the host can have an address on the network of WSL here.
extern const bool canHaveWslAddress;

// While it lives this thread, those that it starts and their children see that address, and no other. Does nothing where
// there can be none.
class WslAddress {
public:
    explicit WslAddress(const std::string& address);
    ~WslAddress();
    WslAddress(const WslAddress&) = delete;
    WslAddress& operator=(const WslAddress&) = delete;

private:
    int before_ = -1;
};

// The memory that this process occupies, in bytes.
std::size_t residentMemory();

// Variables of the temporary directory.
extern const char* const temporaryVariable;
