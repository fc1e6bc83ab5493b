#include "random_names.h"

#include <windows.h>

#include <bcrypt.h>

// In the place of the system's.
NTSTATUS WINAPI BCryptGenRandom(BCRYPT_ALG_HANDLE, PUCHAR buffer, ULONG size, ULONG)
{
    constexpr auto notSupported = static_cast<NTSTATUS>(0xC00000BB);
    return takeGivenBytes(buffer, size) ? 0 : notSupported;
}
