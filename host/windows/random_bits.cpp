#include "random_bits.h"

#include "system_error.h"

#include <windows.h>

#include <bcrypt.h>

namespace foundation::core::path {

RandomBits randomBits()
{
    RandomBits bits{};
    const NTSTATUS status =
        BCryptGenRandom(nullptr, bits.data(), static_cast<ULONG>(bits.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    if (status < 0) {
        throw system::SystemError(static_cast<DWORD>(status), "BCryptGenRandom");
    }
    return bits;
}

} // namespace foundation::core::path
