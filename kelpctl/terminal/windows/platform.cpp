#include "terminal/platform.h"

#include "host/environment.h"
#include "host/process.h"
#include "host/text.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace kelpctl {
namespace {

std::string utf8(std::wstring_view text)
{
    return foundation::core::text::cvt_ustring_utf8(std::u16string(text.begin(), text.end()));
}

// What the console was like before kelpctl changed it: its code page, and what each stream that is a console obeys.
struct ConsoleState {
    UINT codePage = 0;
    std::array<std::pair<HANDLE, DWORD>, 2> modes{};
};

ConsoleState& consoleBefore()
{
    static ConsoleState state;
    return state;
}

void rememberConsole()
{
    ConsoleState& before = consoleBefore();
    before = {GetConsoleOutputCP(), {}};
    auto* mode = before.modes.data();
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        mode->first = GetStdHandle(stream);
        if (GetConsoleMode(mode->first, &mode->second) == FALSE) {
            mode->first = nullptr;
        }
        ++mode;
    }
}

void restoreConsole()
{
    const ConsoleState& before = consoleBefore();
    for (const auto& [console, mode] : before.modes) {
        if (console != nullptr) {
            SetConsoleMode(console, mode);
            SetConsoleOutputCP(before.codePage);
        }
    }
}

// The last of kelpctl's handlers: the system's own is the next, and ends the process.
BOOL WINAPI restoreOnEvent(DWORD /*event*/)
{
    restoreConsole();
    return FALSE;
}

DWORD handleNumber(StandardStream stream)
{
    switch (stream) {
    case StandardStream::input:
        return STD_INPUT_HANDLE;
    case StandardStream::output:
        return STD_OUTPUT_HANDLE;
    case StandardStream::error:
        break;
    }
    return STD_ERROR_HANDLE;
}

} // namespace

// The process service splits the line by the rules that it quotes arguments by. The runtime's own arguments would have
// wildcards expanded.
std::vector<std::string> programArguments(int /*argc*/, const char* const /*argv*/[])
{
    std::vector<std::string> arguments = orb::process::detail::getRunArguments(utf8(GetCommandLineW()));
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());
    }
    return arguments;
}

void setEnvironmentVariable(const std::string& name, const std::string& value)
{
    if (const int error = _putenv_s(name.c_str(), value.c_str()); error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot set " + name);
    }
}

bool isTerminal(StandardStream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(handleNumber(stream)), &mode) != 0;
}

bool showsColours(StandardStream stream)
{
    const HANDLE console = GetStdHandle(handleNumber(stream));
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::filesystem::path userFolder()
{
    return foundation::core::text::cvt_utf8_ustring(foundation::core::env::variable("USERPROFILE").value_or(""));
}

// Windows compares the rights that are asked for with the folder's list when the folder is opened, not when it is used.
bool mayWriteInto(const std::filesystem::path& folder)
{
    const HANDLE opened = CreateFileW(folder.c_str(), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return false;
    }
    CloseHandle(opened);
    return true;
}

// The first of the languages that the user has chosen for Windows itself, "de-DE" being German.
std::string systemLanguage()
{
    constexpr ULONG enough = 512;
    ULONG count = 0;
    ULONG size = enough;
    std::wstring names(enough, L'\0');
    if (GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &size) == FALSE || count == 0) {
        return {};
    }
    const std::wstring first = names.substr(0, names.find(L'\0'));
    return utf8(first.substr(0, first.find(L'-')));
}

// The computer's own, also for a program that it emulates.
std::string processorName()
{
    USHORT emulated = IMAGE_FILE_MACHINE_UNKNOWN;
    USHORT machine = IMAGE_FILE_MACHINE_UNKNOWN;
    if (IsWow64Process2(GetCurrentProcess(), &emulated, &machine) == FALSE) {
        return {};
    }
    switch (machine) {
    case IMAGE_FILE_MACHINE_AMD64:
        return "amd64";
    case IMAGE_FILE_MACHINE_ARM64:
        return "arm64";
    default:
        return {};
    }
}

std::filesystem::path stateFolder()
{
    const std::string folder = foundation::core::env::variable("LOCALAPPDATA").value_or("");
    return folder.empty() ? std::filesystem::path()
                          : std::filesystem::path(foundation::core::text::cvt_utf8_ustring(folder)) / "kelpctl";
}

std::vector<std::string> namesOfUserAndComputer()
{
    std::vector<std::string> names;
    for (const char* name : {"USERNAME", "USERDOMAIN", "USERDNSDOMAIN", "COMPUTERNAME"}) {
        names.push_back(foundation::core::env::variable(name).value_or(""));
    }
    const std::string profile = foundation::core::env::variable("USERPROFILE").value_or("");
    names.push_back(profile.substr(profile.find_last_of("\\/") + 1));
    std::wstring host(256, L'\0');
    auto size = static_cast<DWORD>(host.size());
    if (GetComputerNameExW(ComputerNameDnsHostname, host.data(), &size) != FALSE) {
        names.push_back(utf8(std::wstring_view(host).substr(0, size)));
    }
    return names;
}

std::int32_t wslFailureStatus()
{
    return -1;
}

// A program inside has a status of 0 to 255.
bool wslFailureIsAmbiguous()
{
    return false;
}

StandardStreams::StandardStreams()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    rememberConsole();
    SetConsoleCtrlHandler(restoreOnEvent, TRUE);
    if (isTerminal(StandardStream::output) || isTerminal(StandardStream::error)) {
        SetConsoleOutputCP(CP_UTF8);
    }
}

StandardStreams::~StandardStreams()
{
    restoreConsole();
    SetConsoleCtrlHandler(restoreOnEvent, FALSE);
}

} // namespace kelpctl
