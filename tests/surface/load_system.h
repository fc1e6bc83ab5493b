// Libraries that come and go, and what a process holds meanwhile.
#pragma once

#include <cstdint>
#include <string>

class LoadedLibrary {
public:
    explicit LoadedLibrary(const std::string& path);
    ~LoadedLibrary();
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    // Null when there is no such symbol.
    void* symbol(const char* name) const;

private:
    void* handle_;
};

// Whether a library of that path is in the process.
bool isLoaded(const std::string& path);

struct Holdings {
    // A number that grows with the descriptors or handles that are open.
    std::int64_t handles = 0;
    std::int64_t threads = 0;
    // Memory that is allocated and not freed, as exactly as the system tells.
    std::int64_t bytes = 0;
};

Holdings holdings();
