#include "process_system.h"

#include <windows.h>

#include <psapi.h>

namespace {

HANDLE asHandle(std::ptrdiff_t value)
{
    return reinterpret_cast<HANDLE>(value);
}

std::ptrdiff_t openInheritable(const wchar_t* path, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    return reinterpret_cast<std::ptrdiff_t>(CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                                        disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

constexpr DWORD redirected[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE};

} // namespace

const char* const pathSeparator = ";";

std::vector<std::string> child(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), std::filesystem::absolute(TEST_CHILD).make_preferred().string());
    return arguments;
}

std::filesystem::path plantChild(const std::filesystem::path& folder, const std::string& name)
{
    const std::filesystem::path file = folder / (name + ".exe");
    std::filesystem::copy_file(TEST_CHILD, file);
    return file;
}

std::filesystem::path programFolder()
{
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return std::filesystem::path(program).parent_path();
}

std::size_t openHandles()
{
    // Asked one by one: Wine's own count is always 0.
    constexpr std::ptrdiff_t farthest = 0x10000;
    std::size_t count = 0;
    for (std::ptrdiff_t value = 4; value < farthest; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(asHandle(value), &flags) != FALSE ? 1U : 0U;
    }
    return count;
}

std::size_t peakMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize;
}

ForeignFile::ForeignFile(const std::filesystem::path& folder)
{
    const std::filesystem::path file = folder / "foreign";
    handle_ = openInheritable(file.c_str(), GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
    LARGE_INTEGER end{};
    end.QuadPart = size;
    SetFilePointerEx(asHandle(handle_), end, nullptr, FILE_BEGIN);
    SetEndOfFile(asHandle(handle_));
}

ForeignFile::~ForeignFile()
{
    CloseHandle(asHandle(handle_));
}

std::string ForeignFile::handle() const
{
    return std::to_string(handle_);
}

StandardStreams::StandardStreams(const std::filesystem::path& output)
{
    for (const DWORD stream : redirected) {
        before_.push_back(reinterpret_cast<std::ptrdiff_t>(GetStdHandle(stream)));
    }
    SetStdHandle(STD_INPUT_HANDLE, asHandle(openInheritable(L"NUL", GENERIC_READ, OPEN_EXISTING)));
    SetStdHandle(STD_OUTPUT_HANDLE, asHandle(openInheritable(output.c_str(), GENERIC_WRITE, CREATE_ALWAYS)));
}

StandardStreams::~StandardStreams()
{
    for (std::size_t i = 0; i < before_.size(); ++i) {
        CloseHandle(GetStdHandle(redirected[i]));
        SetStdHandle(redirected[i], asHandle(before_[i]));
    }
}
