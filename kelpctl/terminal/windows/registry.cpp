#include "terminal/windows/registry.h"

#include "host/text.h"

#include <array>

namespace kelpctl {

std::vector<std::wstring> RegistryKey::keys() const
{
    std::vector<std::wstring> names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root_, path_.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
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

std::optional<std::wstring> RegistryKey::text(const wchar_t* value) const
{
    DWORD size = 0;
    if (RegGetValueW(root_, path_.c_str(), value, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::wstring read(size / sizeof(wchar_t), L'\0');
    if (RegGetValueW(root_, path_.c_str(), value, RRF_RT_REG_SZ, nullptr, read.data(), &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    // The size counts the zero at the end.
    read.resize(read.find(L'\0'));
    return read;
}

DWORD RegistryKey::number(const wchar_t* value) const
{
    DWORD read = 0;
    DWORD size = sizeof read;
    RegGetValueW(root_, path_.c_str(), value, RRF_RT_REG_DWORD, nullptr, &read, &size);
    return read;
}

std::string utf8Of(const std::wstring& text)
{
    return foundation::core::text::cvt_ustring_utf8(std::u16string(text.begin(), text.end()));
}

} // namespace kelpctl
