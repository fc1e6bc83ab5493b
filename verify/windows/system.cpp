#include "system.h"

#include "programs.h"

#include "host/text.h"

#include <array>
#include <cstdio>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace verify {

namespace json = boost::json;
namespace text = foundation::core::text;

namespace {

std::wstring wide(const std::string& utf8Text)
{
    const std::u16string units = text::cvt_utf8_ustring(utf8Text);
    return {units.begin(), units.end()};
}

std::string narrow(std::wstring_view wideText)
{
    return text::cvt_ustring_utf8(std::u16string(wideText.begin(), wideText.end()));
}

std::string registryText(const wchar_t* name)
{
    constexpr auto key = LR"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)";
    std::array<wchar_t, 256> value{};
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, key, name, RRF_RT_REG_SZ, nullptr, value.data(), &size);
    return status == ERROR_SUCCESS ? narrow(value.data()) : "";
}

std::int64_t registryNumber(HKEY root, const wchar_t* key, const wchar_t* name)
{
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(root, key, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? static_cast<std::int64_t>(value) : -1;
}

template <class Function>
Function functionOf(const wchar_t* library, const char* name)
{
    const FARPROC found = GetProcAddress(GetModuleHandleW(library), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found)); // the only way to a function by its name
}

std::string wineVersion()
{
    using Version = const char* (*)();
    const auto version = functionOf<Version>(L"ntdll.dll", "wine_get_version");
    return version == nullptr ? "" : version();
}

std::string languages()
{
    constexpr ULONG enough = 512;
    ULONG count = 0;
    ULONG size = enough;
    std::wstring names(enough, L'\0');
    GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &size);
    std::string all;
    for (std::size_t begin = 0; count > 0; --count) {
        const std::wstring name = names.c_str() + begin;
        all += (all.empty() ? "" : " ") + narrow(name);
        begin += name.size() + 1;
    }
    return all;
}

bool isElevated()
{
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) {
        return false;
    }
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    const BOOL known = GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
    CloseHandle(token);
    return known != FALSE && elevation.TokenIsElevated != 0;
}

std::string fileSystemOf(const std::filesystem::path& path)
{
    std::array<wchar_t, MAX_PATH> name{};
    GetVolumeInformationW(path.root_path().c_str(), nullptr, 0, nullptr, nullptr, nullptr, name.data(),
                          static_cast<DWORD>(name.size()));
    return narrow(name.data());
}

std::int64_t session()
{
    DWORD number = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &number);
    return number;
}

// A code page of the system: those of this program are UTF-8, because its manifest says so.
UINT systemCodePage(LCTYPE which)
{
    DWORD page = 0;
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, which | LOCALE_RETURN_NUMBER, reinterpret_cast<wchar_t*>(&page),
                   sizeof page / sizeof(wchar_t)); // a number in the place of a text
    return page;
}

UINT consolePage()
{
    return systemCodePage(LOCALE_IDEFAULTCODEPAGE);
}

json::object policies()
{
    constexpr auto key = LR"(SOFTWARE\Policies\WSL)";
    return {{"AllowWSL", registryNumber(HKEY_LOCAL_MACHINE, key, L"AllowWSL")},
            {"AllowInboxWSL", registryNumber(HKEY_LOCAL_MACHINE, key, L"AllowInboxWSL")}};
}

BOOL WINAPI onConsoleEvent(DWORD /*event*/)
{
    interrupt();
    return TRUE;
}

std::wstring variable(const wchar_t* name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

HANDLE openAlone(const std::filesystem::path& file, DWORD disposition)
{
    return CreateFileW(file.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, disposition, FILE_FLAG_DELETE_ON_CLOSE,
                       nullptr);
}

} // namespace

std::optional<std::string> fromConsole(const std::string& bytes)
{
    if (bytes.empty()) {
        return "";
    }
    const int size = static_cast<int>(bytes.size());
    std::wstring units(bytes.size(), L'\0');
    const int length = MultiByteToWideChar(consolePage(), MB_ERR_INVALID_CHARS, bytes.data(), size, units.data(), size);
    if (length == 0) {
        return std::nullopt;
    }
    units.resize(static_cast<std::size_t>(length));
    return narrow(units);
}

std::optional<std::string> inConsolePage(const std::string& utf8Text)
{
    const std::wstring units = wide(utf8Text);
    const bool isUtf8 = consolePage() == CP_UTF8;
    std::string bytes(units.size() * 4, '\0');
    BOOL replaced = FALSE;
    const int length = WideCharToMultiByte(consolePage(), isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, units.c_str(),
                                           static_cast<int>(units.size()), bytes.data(), static_cast<int>(bytes.size()),
                                           nullptr, isUtf8 ? nullptr : &replaced);
    bytes.resize(static_cast<std::size_t>(length));
    return length > 0 && replaced == FALSE ? std::optional(bytes) : std::nullopt;
}

std::string consoleLetters()
{
    for (const char* letters : {"Jürgen", "ソース", "папка", "φακελος"}) {
        if (inConsolePage(letters)) {
            return letters;
        }
    }
    return "letters";
}

bool runsOnWine()
{
    return !wineVersion().empty();
}

bool speaksEnglish()
{
    return languages().starts_with("en");
}

json::object describeSystem()
{
    using Version = LONG(WINAPI*)(OSVERSIONINFOW*);
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    functionOf<Version>(L"ntdll.dll", "RtlGetVersion")(&version);
    std::array<wchar_t, MAX_PATH + 1> temporary{};
    GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
    return {{"wine", wineVersion()},
            {"edition", registryText(L"EditionID")},
            {"release", registryText(L"DisplayVersion")},
            {"version", std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion)},
            {"build", static_cast<std::int64_t>(version.dwBuildNumber)},
            {"update", registryNumber(HKEY_LOCAL_MACHINE, LR"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)", L"UBR")},
            {"ansiCodePage", static_cast<std::int64_t>(systemCodePage(LOCALE_IDEFAULTANSICODEPAGE))},
            {"consoleCodePage", static_cast<std::int64_t>(consolePage())},
            {"languages", languages()},
            {"processor", narrow(variable(L"PROCESSOR_ARCHITECTURE"))},
            {"elevated", isElevated()},
            {"session", session()},
            {"temporaryFileSystem", fileSystemOf(temporary.data())},
            {"policies", policies()}};
}

// The short form of the user's folder has part of the name.
void hideNames(Names& names)
{
    names.hideWord("<user>", narrow(variable(L"USERNAME")));
    const std::wstring profile = variable(L"USERPROFILE");
    names.hideWord("<user>", narrow(std::filesystem::path(profile).filename().native()));
    std::array<wchar_t, MAX_PATH> shortForm{};
    GetShortPathNameW(profile.c_str(), shortForm.data(), static_cast<DWORD>(shortForm.size()));
    names.hideWord("<user>", narrow(std::filesystem::path(shortForm.data()).filename().native()));
    names.hideWord("<machine>", narrow(variable(L"COMPUTERNAME")));
    names.hideWord("<domain>", narrow(variable(L"USERDOMAIN")));
}

void setVariable(const std::string& name, const std::optional<std::string>& value)
{
    SetEnvironmentVariableW(wide(name).c_str(), value ? wide(*value).c_str() : nullptr);
}

void prepareConsole()
{
    _setmode(_fileno(stdout), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

std::filesystem::path programFolder()
{
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return std::filesystem::path(name).parent_path();
}

std::string utf8(const std::filesystem::path& path)
{
    return narrow(path.native());
}

std::filesystem::path pathOf(const std::string& utf8Text)
{
    return wide(utf8Text);
}

Lock::Lock(const std::filesystem::path& file) : handle_(openAlone(file, CREATE_NEW))
{
    if (handle_ == INVALID_HANDLE_VALUE) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "cannot make the lock");
    }
}

Lock::~Lock()
{
    CloseHandle(handle_);
}

bool Lock::isHeld(const std::filesystem::path& file)
{
    const HANDLE handle = openAlone(file, OPEN_EXISTING);
    if (handle != INVALID_HANDLE_VALUE) {
        CloseHandle(handle);
        return false;
    }
    return GetLastError() == ERROR_SHARING_VIOLATION;
}

} // namespace verify
