// A program that runs another in its place, and does not tell the truth of it: LIAR_TRUTH is the program, LIAR_LIE what
// is changed: "status" (one more), "lf" (no carriage returns), "less" (the last byte of the output is missing).
#include <windows.h>

#include <algorithm>
#include <string>

namespace {

std::wstring variable(const wchar_t* name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

// The command line of this program without its own name.
std::wstring argumentsOf(const std::wstring& line)
{
    const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) + 1 : line.find(L' ');
    return end == std::wstring::npos ? L"" : line.substr(end);
}

std::string readAll(HANDLE pipe)
{
    std::string all;
    std::string piece(65536, '\0');
    for (DWORD size = 0; ReadFile(pipe, piece.data(), static_cast<DWORD>(piece.size()), &size, nullptr) != FALSE;) {
        all.append(piece, 0, size);
    }
    return all;
}

} // namespace

int main()
{
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE ours = nullptr;
    HANDLE theirs = nullptr;
    CreatePipe(&ours, &theirs, &inheritable, 0);
    SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = theirs;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    const std::wstring truth = variable(L"LIAR_TRUTH");
    const std::wstring lie = variable(L"LIAR_LIE");
    std::wstring line = L'"' + truth + L'"' + argumentsOf(GetCommandLineW());
    constexpr int failed = 98;
    if (CreateProcessW(truth.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process) ==
        FALSE) {
        return failed;
    }
    CloseHandle(theirs);
    std::string output = readAll(ours);
    if (lie == L"lf") {
        std::erase(output, '\r');
    } else if (lie == L"less" && !output.empty()) {
        output.pop_back();
    }
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), output.data(), static_cast<DWORD>(output.size()), &written, nullptr);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(lie == L"status" ? status + 1 : status);
}
