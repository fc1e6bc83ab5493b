#include "player_system.h"

#include "simulation.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>

namespace faults {

// A program that has crashed.
const std::int32_t killedStatus = static_cast<std::int32_t>(EXCEPTION_ACCESS_VIOLATION);
const std::int32_t minusOneStatus = -1;
const bool consolesHaveCodePages = true;

} // namespace faults

void makeStreamsBinary()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

std::filesystem::path ownPath()
{
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

long long ownProcess()
{
    return GetCurrentProcessId();
}

void killSelf()
{
    TerminateProcess(GetCurrentProcess(), EXCEPTION_ACCESS_VIOLATION);
    std::abort();
}

void killProcess(long long process)
{
    const HANDLE handle = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    TerminateProcess(handle, 9);
    WaitForSingleObject(handle, INFINITE);
    CloseHandle(handle);
}

long long startBeside(const std::filesystem::path& program, const std::string& argument)
{
    std::wstring line = L'"' + program.wstring() + L"\" " + std::wstring(argument.begin(), argument.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process) ==
        FALSE) {
        return 0;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return process.dwProcessId;
}

void exitWithStatus(long long status)
{
    std::fflush(stdout);
    ExitProcess(static_cast<UINT>(status));
}
