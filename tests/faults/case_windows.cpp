#include "case_system.h"

#include <windows.h>

#include <psapi.h>

#include <array>
#include <set>
#include <string>

const char* const temporaryVariable = "TMP";

namespace {

// The name of a handle's type, empty when it is no handle.
std::wstring typeName(HANDLE handle)
{
    using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    static const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryObject")));
    // A counted text, and the text itself behind it.
    struct Information {
        USHORT length;
        USHORT size;
        const wchar_t* text;
        std::array<wchar_t, 512> room;
    };
    constexpr int typeInformation = 2;
    Information information{};
    ULONG size = 0;
    if (query(handle, typeInformation, &information, sizeof information, &size) < 0 || information.text == nullptr) {
        return {};
    }
    return {information.text, information.length / sizeof(wchar_t)};
}

} // namespace

std::size_t openHandles()
{
    // Those that running a program takes. The library's events come in pairs with pipes, which are files. The C runtime
    // and the system keep others from their first use on: events and semaphores of locks that two threads once wanted,
    // registry keys, the folder of named objects.
    const std::set<std::wstring> counted{L"File", L"Process", L"Thread"};
    constexpr std::ptrdiff_t farthest = 0x4000;
    std::size_t count = 0;
    for (std::ptrdiff_t value = 4; value < farthest; value += 4) {
        const auto handle = reinterpret_cast<HANDLE>(value);
        count += counted.contains(typeName(handle)) ? 1U : 0U;
    }
    return count;
}

bool isRunning(long long process, const std::filesystem::path& folder)
{
    const HANDLE handle =
        OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(process));
    if (handle == nullptr) {
        return false;
    }
    std::wstring program(32768, L'\0');
    auto length = static_cast<DWORD>(program.size());
    const bool known = QueryFullProcessImageNameW(handle, 0, program.data(), &length) != FALSE;
    program.resize(known ? length : 0);
    const bool running = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    const std::filesystem::path below = std::filesystem::path(program).lexically_relative(folder);
    return running && !below.empty() && *below.begin() != "..";
}

std::size_t threadCount()
{
    return 0;
}

void adoptOrphans() {}

std::size_t remainingChildren()
{
    return 0;
}

const bool canHaveWslAddress = false;

WslAddress::WslAddress(const std::string&) {}
WslAddress::~WslAddress() = default;

std::size_t residentMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize;
}
