#include "terminal/registrations.h"

#include "host/text.h"

#include <array>
#include <optional>
#include <system_error>

#include <windows.h>

namespace kelpctl {
namespace {

constexpr wchar_t lxss[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Lxss";

// The path of a key below HKEY_CURRENT_USER, and its values.
class Entry {
public:
    explicit Entry(const std::wstring& name) : key_(std::wstring(lxss) + L"\\" + name) {}

    std::optional<std::wstring> text(const wchar_t* value) const
    {
        DWORD size = 0;
        if (RegGetValueW(HKEY_CURRENT_USER, key_.c_str(), value, RRF_RT_REG_SZ, nullptr, nullptr, &size) !=
            ERROR_SUCCESS) {
            return std::nullopt;
        }
        std::wstring read(size / sizeof(wchar_t), L'\0');
        if (RegGetValueW(HKEY_CURRENT_USER, key_.c_str(), value, RRF_RT_REG_SZ, nullptr, read.data(), &size) !=
            ERROR_SUCCESS) {
            return std::nullopt;
        }
        // The size counts the zero at the end.
        read.resize(read.find(L'\0'));
        return read;
    }

    DWORD number(const wchar_t* value) const
    {
        DWORD read = 0;
        DWORD size = sizeof read;
        RegGetValueW(HKEY_CURRENT_USER, key_.c_str(), value, RRF_RT_REG_DWORD, nullptr, &read, &size);
        return read;
    }

private:
    std::wstring key_;
};

std::vector<std::wstring> keysBelowLxss()
{
    std::vector<std::wstring> names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, lxss, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return names;
    }
    // A key's name has at most 255 letters.
    std::array<wchar_t, 256> name{};
    DWORD length = name.size();
    while (RegEnumKeyExW(key, static_cast<DWORD>(names.size()), name.data(), &length, nullptr, nullptr, nullptr,
                         nullptr) == ERROR_SUCCESS) {
        names.emplace_back(name.data(), length);
        length = name.size();
    }
    RegCloseKey(key);
    return names;
}

// WSL writes many folders with the prefix that lifts the limit of 260 letters.
std::wstring withoutPrefix(const std::wstring& path)
{
    constexpr std::wstring_view prefix = L"\\\\?\\";
    constexpr std::wstring_view server = L"\\\\?\\UNC\\";
    return path.starts_with(prefix) && !path.starts_with(server) ? path.substr(prefix.size()) : path;
}

// "Version" tells the layout of the files; the flag tells WSL 2.
std::optional<Registration> registrationOf(const Entry& entry)
{
    constexpr DWORD installed = 1;
    constexpr DWORD ownMachine = 0x8;
    const std::optional<std::wstring> name = entry.text(L"DistributionName");
    const std::optional<std::wstring> folder = entry.text(L"BasePath");
    if (!name || !folder) {
        return std::nullopt;
    }
    Registration registration;
    registration.name = foundation::core::text::cvt_ustring_utf8(std::u16string(name->begin(), name->end()));
    registration.installed = entry.number(L"State") == installed;
    if ((entry.number(L"Flags") & ownMachine) != 0) {
        registration.disk =
            std::filesystem::path(withoutPrefix(*folder)) / entry.text(L"VhdFileName").value_or(L"ext4.vhdx");
    }
    return registration;
}

} // namespace

std::vector<Registration> registrations()
{
    std::vector<Registration> all;
    for (const std::wstring& name : keysBelowLxss()) {
        try {
            if (const std::optional<Registration> registration = registrationOf(Entry(name))) {
                all.push_back(*registration);
            }
        } catch (const std::system_error&) {
            // No text, so none of a distribution.
        }
    }
    return all;
}

} // namespace kelpctl
