#include "terminal/policies.h"

#include "terminal/windows/registry.h"

#include <algorithm>
#include <array>
#include <exception>

#include <windows.h>

namespace kelpctl {

std::vector<Policy> wslPolicies()
{
    constexpr wchar_t path[] = L"Software\\Policies\\WSL";
    std::vector<Policy> all;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS) {
        return all;
    }
    // No policy of WSL has a name of that length; what is longer ends the list.
    std::array<wchar_t, 256> name{};
    for (DWORD index = 0;; ++index) {
        DWORD length = name.size();
        DWORD type = 0;
        DWORD value = 0;
        DWORD size = sizeof value;
        const LSTATUS status =
            RegEnumValueW(key, index, name.data(), &length, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
        if (status == ERROR_SUCCESS && type == REG_DWORD) {
            try {
                all.push_back({utf8Of(std::wstring(name.data(), length)), value});
            } catch (const std::exception&) {
                // No text, so none of WSL's.
            }
        } else if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) {
            break;
        }
    }
    RegCloseKey(key);
    std::sort(all.begin(), all.end(), [](const Policy& one, const Policy& other) { return one.name < other.name; });
    return all;
}

} // namespace kelpctl
