#include "case_system.h"

#include <windows.h>

const char* const temporaryVariable = "TMP";

std::size_t openHandles()
{
    // Asked one by one: Wine's own count is always 0.
    constexpr std::ptrdiff_t farthest = 0x4000;
    std::size_t count = 0;
    for (std::ptrdiff_t value = 4; value < farthest; value += 4) {
        DWORD flags = 0;
        const auto handle = reinterpret_cast<HANDLE>(value); // NOLINT(performance-no-int-to-ptr): a handle is a number
        count += GetHandleInformation(handle, &flags) != FALSE ? 1U : 0U;
    }
    return count;
}

bool isRunning(long long process)
{
    const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (handle == nullptr) {
        return false;
    }
    const bool running = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    return running;
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
