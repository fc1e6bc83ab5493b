#include "run_program.h"

#include "../wsl/command_line.h"

#include <windows.h>

#include <atomic>
#include <stdexcept>

namespace {

constexpr DWORD timeLimit = 60000;

std::wstring wide(const std::string& text)
{
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), length, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), length, result.data(), size);
    return result;
}

struct IgnoringCase {
    bool operator()(const std::wstring& left, const std::wstring& right) const
    {
        return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};

std::wstring environmentWith(const Environment& added)
{
    std::map<std::wstring, std::wstring, IgnoringCase> all;
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* entry = block; *entry != L'\0'; entry += std::wstring(entry).size() + 1) {
        const std::wstring text = entry;
        const std::size_t equals = text.find(L'=', 1);
        if (!text.starts_with(L"WSL")) {
            all[text.substr(0, equals)] = text.substr(equals + 1);
        }
    }
    FreeEnvironmentStringsW(block);
    for (const auto& [name, value] : added) {
        all[wide(name)] = wide(value);
    }
    std::wstring result;
    for (const auto& [name, value] : all) {
        result += name + L"=" + value + L'\0';
    }
    return result + L'\0';
}

HANDLE openInheritable(const std::filesystem::path& file, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, disposition,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

struct Streams {
    explicit Streams(const std::filesystem::path& base)
        : input(openInheritable(base.string() + ".in", GENERIC_READ, OPEN_EXISTING)),
          output(openInheritable(base.string() + ".out", GENERIC_WRITE, CREATE_ALWAYS)),
          errors(openInheritable(base.string() + ".err", GENERIC_WRITE, CREATE_ALWAYS))
    {
    }
    ~Streams()
    {
        CloseHandle(input);
        CloseHandle(output);
        CloseHandle(errors);
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    HANDLE input;
    HANDLE output;
    HANDLE errors;
};

HANDLE spawn(const Call& call, const Streams& streams, HANDLE input)
{
    std::vector<std::string> arguments = call.arguments;
    arguments.insert(arguments.begin(), call.program.string());
    std::wstring line = wide(stand_in::joinWindows(arguments) + call.rawArguments);
    std::wstring environment = environmentWith(call.environment);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input;
    startup.hStdOutput = streams.output;
    startup.hStdError = streams.errors;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(call.program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                       environment.data(), call.folder.c_str(), &startup, &process) == FALSE) {
        throw std::runtime_error("cannot run " + call.program.string());
    }
    CloseHandle(process.hThread);
    return process.hProcess;
}

long long finish(HANDLE process, DWORD limit)
{
    if (WaitForSingleObject(process, limit) == WAIT_TIMEOUT) {
        TerminateProcess(process, Outcome::terminated);
        WaitForSingleObject(process, INFINITE);
    }
    DWORD status = 0;
    GetExitCodeProcess(process, &status);
    CloseHandle(process);
    return status;
}

// A pipe that nothing is written to and that stays open until the program has ended.
long long runWithOpenInput(const Call& call, const Streams& streams)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    CreatePipe(&readEnd, &writeEnd, &inheritable, 0);
    SetHandleInformation(writeEnd, HANDLE_FLAG_INHERIT, 0);
    const long long status = finish(spawn(call, streams, readEnd), timeLimit);
    CloseHandle(readEnd);
    CloseHandle(writeEnd);
    return status;
}

} // namespace

Outcome runProgram(const Call& call)
{
    static std::atomic<int> calls = 0;
    const std::filesystem::path base = call.folder / ("call" + std::to_string(++calls));
    writeFile(base.string() + ".in", call.input);
    Outcome outcome;
    {
        const Streams streams(base);
        const DWORD limit = call.terminateAfterMilliseconds == 0 ? timeLimit : call.terminateAfterMilliseconds;
        outcome.status =
            call.inputStaysOpen ? runWithOpenInput(call, streams) : finish(spawn(call, streams, streams.input), limit);
    }
    outcome.output = readFile(base.string() + ".out");
    outcome.errors = readFile(base.string() + ".err");
    return outcome;
}
