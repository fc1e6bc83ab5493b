#include "terminal/account.h"

#include "terminal/windows/registry.h"

#include <array>
#include <cstddef>
#include <exception>

#include <windows.h>

namespace kelpctl {
namespace {

std::string userName()
{
    // As Windows limits it, with the zero at the end.
    std::array<wchar_t, 257> name{};
    DWORD length = name.size();
    if (GetUserNameW(name.data(), &length) == FALSE || length == 0) {
        return {};
    }
    try {
        return utf8Of(std::wstring(name.data(), length - 1));
    } catch (const std::exception&) {
        return {};
    }
}

bool isElevated(HANDLE token)
{
    TOKEN_ELEVATION elevation{};
    DWORD length = 0;
    return GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &length) != FALSE &&
           elevation.TokenIsElevated != 0;
}

bool isSystemsOwn(HANDLE token)
{
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    DWORD length = 0;
    return GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &length) != FALSE &&
           IsWellKnownSid(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, WinLocalSystemSid) != FALSE;
}

} // namespace

Account currentAccount()
{
    Account account;
    account.name = userName();
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) != FALSE) {
        account.elevated = isElevated(token);
        account.isSystem = isSystemsOwn(token);
        CloseHandle(token);
    }
    DWORD session = 0;
    if (ProcessIdToSessionId(GetCurrentProcessId(), &session) != FALSE) {
        account.session = session;
    }
    return account;
}

} // namespace kelpctl
