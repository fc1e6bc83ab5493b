#include "terminal/registrations.h"

#include "terminal/windows/registry.h"

#include <array>
#include <cstddef>
#include <optional>
#include <system_error>

#include <sddl.h>
#include <windows.h>

namespace kelpctl {
namespace {

constexpr wchar_t lxss[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Lxss";

// WSL writes many folders with the prefix that lifts the limit of 260 letters.
std::wstring withoutPrefix(const std::wstring& path)
{
    constexpr std::wstring_view prefix = L"\\\\?\\";
    constexpr std::wstring_view server = L"\\\\?\\UNC\\";
    return path.starts_with(prefix) && !path.starts_with(server) ? path.substr(prefix.size()) : path;
}

// "Version" tells the layout of the files; the flag tells WSL 2.
std::optional<Registration> registrationOf(const RegistryKey& entry)
{
    constexpr DWORD installed = 1;
    constexpr DWORD ownMachine = 0x8;
    const std::optional<std::wstring> name = entry.text(L"DistributionName");
    const std::optional<std::wstring> folder = entry.text(L"BasePath");
    if (!name || !folder) {
        return std::nullopt;
    }
    Registration registration;
    registration.name = utf8Of(*name);
    registration.installed = entry.number(L"State") == installed;
    if ((entry.number(L"Flags") & ownMachine) != 0) {
        registration.disk =
            std::filesystem::path(withoutPrefix(*folder)) / entry.text(L"VhdFileName").value_or(L"ext4.vhdx");
    }
    return registration;
}

std::vector<Registration> registrationsBelow(const RegistryKey& key)
{
    std::vector<Registration> all;
    for (const std::wstring& name : key.keys()) {
        try {
            if (const std::optional<Registration> registration = registrationOf(key.below(name))) {
                all.push_back(*registration);
            }
        } catch (const std::system_error&) {
            // No text, so none of a distribution.
        }
    }
    return all;
}

// The identifier of this process's user, as text; empty when the system does not tell.
std::wstring ownIdentifier()
{
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    HANDLE token = nullptr;
    DWORD length = 0;
    wchar_t* text = nullptr;
    std::wstring identifier;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) {
        return identifier;
    }
    if (GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &length) != FALSE &&
        ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &text) != FALSE) {
        identifier = text;
        LocalFree(text);
    }
    CloseHandle(token);
    return identifier;
}

// The account's name; the identifier when the system knows no name for it.
std::wstring accountOf(const std::wstring& identifier)
{
    std::array<wchar_t, 257> name{};
    std::array<wchar_t, 257> domain{};
    DWORD nameLength = name.size();
    DWORD domainLength = domain.size();
    SID_NAME_USE use = SidTypeUnknown;
    PSID sid = nullptr;
    if (ConvertStringSidToSidW(identifier.c_str(), &sid) == FALSE) {
        return identifier;
    }
    const bool known =
        LookupAccountSidW(nullptr, sid, name.data(), &nameLength, domain.data(), &domainLength, &use) != FALSE;
    LocalFree(sid);
    return known ? std::wstring(domain.data()) + L"\\" + name.data() : identifier;
}

} // namespace

std::vector<Registration> registrations()
{
    return registrationsBelow({HKEY_CURRENT_USER, lxss});
}

// Who may not read another's part of the registry, as only administrators may, is told that there is nothing in it.
std::vector<OthersRegistration> registrationsOfOthers()
{
    std::vector<OthersRegistration> all;
    const std::wstring own = ownIdentifier();
    for (const std::wstring& identifier : RegistryKey(HKEY_USERS, {}).keys()) {
        if (identifier == own || own.empty()) {
            continue;
        }
        for (const Registration& each : registrationsBelow({HKEY_USERS, identifier + L"\\" + lxss})) {
            all.push_back({utf8Of(accountOf(identifier)), each.name});
        }
    }
    return all;
}

} // namespace kelpctl
