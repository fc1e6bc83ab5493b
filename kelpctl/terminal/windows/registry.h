// Keys of the registry, read only. What cannot be read is not there.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace kelpctl {

// By its root and the path below that.
class RegistryKey {
public:
    RegistryKey(HKEY root, std::wstring path) : root_(root), path_(std::move(path)) {}

    RegistryKey below(const std::wstring& name) const { return {root_, path_ + L"\\" + name}; }
    std::vector<std::wstring> keys() const;
    std::optional<std::wstring> text(const wchar_t* value) const;
    // 0 when there is none.
    DWORD number(const wchar_t* value) const;

private:
    HKEY root_;
    std::wstring path_;
};

// Throws std::system_error for text that is not well-formed.
std::string utf8Of(const std::wstring& text);

} // namespace kelpctl
