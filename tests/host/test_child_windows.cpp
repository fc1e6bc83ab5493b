#include "test_child.h"

#include <algorithm>
#include <cstdint>
#include <iostream>

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace {

std::string utf8(const std::wstring& text)
{
    const int units = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), units, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring utf16(const std::string& text)
{
    const int bytes = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), bytes, nullptr, 0);
    std::wstring units(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), bytes, units.data(), size);
    return units;
}

// Whether the system's own rules give the same arguments as the C runtime's.
bool systemAgrees(int count, wchar_t** arguments)
{
    int systemCount = 0;
    wchar_t** const systemArguments = CommandLineToArgvW(GetCommandLineW(), &systemCount);
    bool same = systemCount == count;
    for (int i = 0; same && i < count; ++i) {
        same = std::wstring(systemArguments[i]) == arguments[i];
    }
    LocalFree(static_cast<void*>(systemArguments));
    return same;
}

} // namespace

void useBinaryStreams()
{
    for (const int stream : {0, 1, 2}) {
        _setmode(stream, _O_BINARY);
    }
}

std::optional<std::string> variable(const std::string& name)
{
    std::wstring value(32768, L'\0');
    SetLastError(ERROR_SUCCESS);
    const DWORD size = GetEnvironmentVariableW(utf16(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (size == 0 && GetLastError() != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.resize(size);
    return utf8(value);
}

std::string currentFolder()
{
    std::wstring folder(32768, L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return utf8(folder);
}

long long openFileSize(const std::string& handle)
{
    LARGE_INTEGER size{};
    const auto value = static_cast<std::uintptr_t>(std::stoull(handle));
    const BOOL known = GetFileSizeEx(reinterpret_cast<HANDLE>(value), &size); // a handle is a number here
    return known != FALSE ? size.QuadPart : -1;
}

void exitWith(long long status)
{
    std::cout.flush();
    ExitProcess(static_cast<UINT>(status));
}

namespace {

void startAgainWith(DWORD flags, const std::vector<std::string>& arguments)
{
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    std::wstring line = L'"' + program + L'"';
    for (const std::string& argument : arguments) {
        line += L" \"" + utf16(argument) + L'"';
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &startup,
                       &process) != FALSE) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

} // namespace

void startAgain(const std::vector<std::string>& arguments)
{
    startAgainWith(0, arguments);
}

namespace {

// MODE...: starts this program again with these, outside of this one's job, and goes on.
int breakAway(const std::vector<std::string>& arguments)
{
    startAgainWith(CREATE_BREAKAWAY_FROM_JOB, {arguments.begin() + 2, arguments.end()});
    Sleep(120000);
    return 0;
}

// MODE...: starts this program again with these, in a job within this one's, and goes on.
int nestJob(const std::vector<std::string>& arguments)
{
    constexpr int failed = 95;
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    if (AssignProcessToJobObject(job, GetCurrentProcess()) == FALSE) {
        return failed;
    }
    startAgainWith(0, {arguments.begin() + 2, arguments.end()});
    Sleep(120000);
    return 0;
}

// The names of the variables, a line each, as they arrived: of all, or of those that are named, in whatever letters.
int printVariableNames(const std::vector<std::string>& wanted)
{
    const auto isWanted = [&wanted](const std::string& name) {
        return wanted.empty() || std::any_of(wanted.begin(), wanted.end(), [&name](const std::string& each) {
                   return _stricmp(each.c_str(), name.c_str()) == 0;
               });
    };
    wchar_t* const strings = GetEnvironmentStringsW();
    for (const wchar_t* next = strings; *next != L'\0';) {
        std::wstring line = next;
        next += line.size() + 1;
        line.resize(line.find(L'=', 1));
        if (const std::string name = utf8(line); isWanted(name)) {
            std::cout << name << '\n';
        }
    }
    FreeEnvironmentStringsW(strings);
    return 0;
}

// Whether this program shows a console's window.
int printWindow()
{
    const HWND window = GetConsoleWindow();
    std::cout << (window != nullptr && IsWindowVisible(window) != FALSE ? "window\n" : "no window\n");
    return 0;
}

// FILE SIZE: writes so many bytes, says so and keeps the file open.
int holdFile(const std::vector<std::string>& arguments)
{
    const HANDLE file = CreateFileW(utf16(arguments.at(2)).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, CREATE_ALWAYS, 0, nullptr);
    const std::string content(std::stoul(arguments.at(3)), 'x');
    DWORD written = 0;
    WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    std::cout << "written" << std::flush;
    Sleep(120000);
    return 0;
}

} // namespace

std::optional<int> systemMode(const std::vector<std::string>& arguments)
{
    if (arguments[1] == "break-away") {
        return breakAway(arguments);
    }
    if (arguments[1] == "nest-job") {
        return nestJob(arguments);
    }
    if (arguments[1] == "window") {
        return printWindow();
    }
    if (arguments[1] == "hold-file") {
        return holdFile(arguments);
    }
    if (arguments[1] == "variable-names") {
        return printVariableNames({arguments.begin() + 2, arguments.end()});
    }
    return std::nullopt;
}

int wmain(int count, wchar_t** wideArguments)
{
    constexpr int disagreement = 96;
    if (!systemAgrees(count, wideArguments)) {
        return disagreement;
    }
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        arguments.push_back(utf8(wideArguments[i]));
    }
    return testChild(arguments);
}
