#include "load_system.h"

#include <windows.h>

#include <tlhelp32.h>

#include <system_error>
#include <vector>

namespace {

std::int64_t threadsOfThisProcess()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::int64_t count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != FALSE; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

// The system gives a new handle the lowest value that is free, so the value grows with the handles that are open. Wine
// does not tell their number.
std::int64_t nextHandle()
{
    const HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    return reinterpret_cast<std::intptr_t>(handle);
}

std::int64_t bytesIn(HANDLE heap)
{
    std::int64_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry) != FALSE) {
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? static_cast<std::int64_t>(entry.cbData) : 0;
    }
    return bytes;
}

std::int64_t bytesInHeaps()
{
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    std::int64_t bytes = 0;
    for (const HANDLE heap : heaps) {
        bytes += bytesIn(heap);
    }
    return bytes;
}

} // namespace

LoadedLibrary::LoadedLibrary(const std::string& path) : handle_(LoadLibraryA(path.c_str()))
{
    if (handle_ == nullptr) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), path);
    }
}

LoadedLibrary::~LoadedLibrary()
{
    FreeLibrary(static_cast<HMODULE>(handle_));
}

void* LoadedLibrary::symbol(const char* name) const
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

bool isLoaded(const std::string& path)
{
    return GetModuleHandleA(path.c_str()) != nullptr;
}

Holdings holdings()
{
    return {nextHandle(), threadsOfThisProcess(), bytesInHeaps()};
}
