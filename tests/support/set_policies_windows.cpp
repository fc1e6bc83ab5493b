#include "set_policies.h"

#include <stdexcept>

#include <windows.h>

namespace {

HKEY openPolicies()
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Policies\\WSL", 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                        nullptr) != ERROR_SUCCESS) {
        throw std::runtime_error("policies cannot be set");
    }
    return key;
}

std::wstring wide(const std::string& name)
{
    return {name.begin(), name.end()};
}

} // namespace

SetPolicies::SetPolicies(const std::map<std::string, unsigned>& policies) : policies_(policies)
{
    const HKEY key = openPolicies();
    for (const auto& [name, value] : policies_) {
        const DWORD number = value;
        RegSetValueExW(key, wide(name).c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    }
    RegCloseKey(key);
}

SetPolicies::~SetPolicies()
{
    const HKEY key = openPolicies();
    for (const auto& [name, value] : policies_) {
        RegDeleteValueW(key, wide(name).c_str());
    }
    RegCloseKey(key);
}
