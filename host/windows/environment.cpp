#include "host/environment.h"

#include "host/text.h"

#include <cstdlib>

#include <windows.h>

namespace foundation::core::env {
namespace {

// The system's own variable; empty when there is none.
std::wstring systemVariable(const std::wstring& name)
{
    std::wstring value(GetEnvironmentVariableW(name.c_str(), nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return value;
}

std::string inAnsiCodePage(const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring fromAnsiCodePage(const std::string& bytes)
{
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, text.data(), size);
    return text;
}

} // namespace

// The runtime library has variables of its own, in the code page, and makes even its wide ones from them. What the
// system has is whole. It is the same variable as long as it reads the same in the code page: programs may change the
// one without the other.
std::optional<std::string> variable(const std::string& name)
{
    const char* const kept = std::getenv(name.c_str());
    if (kept == nullptr) {
        return std::nullopt;
    }
    const std::wstring whole = systemVariable({name.begin(), name.end()});
    const std::wstring value = inAnsiCodePage(whole) == kept ? whole : fromAnsiCodePage(kept);
    return text::cvt_ustring_utf8(std::u16string(value.begin(), value.end()));
}

} // namespace foundation::core::env
