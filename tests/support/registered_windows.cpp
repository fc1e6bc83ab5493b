#include "registered.h"

#include <stdexcept>

#include <windows.h>

namespace {

void setText(HKEY key, const wchar_t* name, const std::wstring& text)
{
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void setNumber(HKEY key, const wchar_t* name, DWORD number)
{
    RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}

} // namespace

OwnRegistry::OwnRegistry() : path_(L"Software\\zqorb_lvm-test-" + std::to_wstring(GetCurrentProcessId()))
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                        &key, nullptr) != ERROR_SUCCESS ||
        RegOverridePredefKey(HKEY_CURRENT_USER, key) != ERROR_SUCCESS) {
        throw std::runtime_error("this process cannot have a registry of its own");
    }
    RegCloseKey(key);
}

OwnRegistry::~OwnRegistry()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

// WSL writes folders with the prefix that lifts the limit of 260 letters.
Registered::Registered(const Entry& entry)
    : key_(L"Software\\Microsoft\\Windows\\CurrentVersion\\Lxss\\{" + folder_.path().filename().wstring() + L"}")
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key,
                        nullptr) != ERROR_SUCCESS) {
        throw std::runtime_error("the registry cannot be written to");
    }
    setText(key, L"DistributionName", {entry.name.begin(), entry.name.end()});
    if (entry.folder) {
        setText(key, L"BasePath", L"\\\\?\\" + entry.folder->wstring());
    }
    setNumber(key, L"State", entry.installed ? 1 : 3);
    setNumber(key, L"Version", 2);
    setNumber(key, L"Flags", entry.ownMachine ? 0xF : 0x7);
    RegCloseKey(key);
}

Registered::~Registered()
{
    RegDeleteKeyW(HKEY_CURRENT_USER, key_.c_str());
}

// On a drive that is not there.
std::filesystem::path Registered::unreachableFolder() const
{
    return L"Q:\\folder";
}
