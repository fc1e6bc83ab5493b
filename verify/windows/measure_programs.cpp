#include "measure_programs.h"

#include "programs.h"
#include "system.h"

#include "host/process.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>
#include <thread>
#include <vector>

#include <windows.h>

namespace verify {

using orb::process::detail::ExitReport;
using orb::process::detail::RunOptions;

namespace {

constexpr std::size_t fileSize = 4242;
constexpr std::size_t fileCount = 8;

Answer saying(std::string text)
{
    Answer answer;
    answer.output = std::move(text);
    return answer;
}

// Handles of files that every program would inherit whose start does not say otherwise. The files are the run's own.
class OpenFiles {
public:
    explicit OpenFiles(const std::filesystem::path& folder)
    {
        SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        for (std::size_t i = 0; i < handles_.size(); ++i) {
            const std::filesystem::path file = folder / ("open" + std::to_string(i));
            std::ofstream(file) << std::string(fileSize + i, 'x');
            handles_.at(i) = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, &inheritable,
                                         OPEN_EXISTING, 0, nullptr);
        }
    }
    ~OpenFiles()
    {
        for (const HANDLE handle : handles_) {
            CloseHandle(handle);
        }
    }
    OpenFiles(const OpenFiles&) = delete;
    OpenFiles& operator=(const OpenFiles&) = delete;

    HANDLE at(std::size_t index) const { return handles_.at(index); }

private:
    std::array<HANDLE, fileCount> handles_{};
};

// Starts the probe by the system's own function, waits for it, and gives the status, or the system's error.
std::string startBare(const std::wstring& line, LPPROC_THREAD_ATTRIBUTE_LIST list, BOOL inherit, void* environment)
{
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = list;
    PROCESS_INFORMATION process{};
    std::wstring text = line;
    const DWORD flags = CREATE_NO_WINDOW | CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT;
    if (CreateProcessW(nullptr, text.data(), nullptr, nullptr, inherit, flags, environment, nullptr,
                       &startup.StartupInfo, &process) == FALSE) {
        return "error " + std::to_string(GetLastError());
    }
    constexpr DWORD patientMs = 30000;
    DWORD status = STILL_ACTIVE;
    if (WaitForSingleObject(process.hProcess, patientMs) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, 1);
    }
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return "status " + std::to_string(status);
}

std::wstring probeLine(const Names& names)
{
    return L'"' + pathOf(names.get("<probe>")).native() + L"\" exit 0";
}

// Arguments as testers and attackers write them: letters that any parser has rules for, in any order.
std::vector<std::string> oddVector(std::mt19937& random)
{
    static const std::array<std::string, 14> parts = {"\"", "\\",     "\\\\", " ", "\t", "a", "ü",
                                                      "ソ", "%PATH%", "^",    "&", "|",  "'", "*"};
    std::vector<std::string> arguments(1 + random() % 4);
    for (std::string& argument : arguments) {
        for (std::size_t left = random() % 7; left > 0; --left) {
            argument += parts.at(random() % parts.size());
        }
    }
    return arguments;
}

std::string inHex(const std::vector<std::string>& arguments)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string lines;
    for (const std::string& argument : arguments) {
        for (const char each : argument) {
            const auto byte = static_cast<unsigned char>(each);
            lines += digits[byte >> 4];
            lines += digits[byte & 15];
        }
        lines += '\n';
    }
    return lines;
}

bool appears(const std::filesystem::path& file, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    std::error_code error;
    while (!std::filesystem::exists(file, error)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

} // namespace

Answer inheritedHandles(const std::string& /*argument*/, const Names& names)
{
    const OpenFiles files(pathOf(names.get("<work>")));
    std::size_t reached = 0;
    for (std::size_t i = 0; i < fileCount; ++i) {
        const auto number = reinterpret_cast<std::uintptr_t>(files.at(i)); // a handle is a number
        Answer seen = runProgram({{names.get("<probe>"), "open-file", std::to_string(number)}});
        if (seen.status != 0) {
            return seen;
        }
        if (seen.output == std::to_string(fileSize + i)) {
            ++reached;
        }
    }
    return saying(std::to_string(reached) + " of " + std::to_string(fileCount));
}

Answer handleList(const std::string& argument, const Names& names)
{
    const OpenFiles files(pathOf(names.get("<work>")));
    // No process has a handle of this number.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is a number
    const auto closed = reinterpret_cast<HANDLE>(std::uintptr_t{0x7FFFFFF0});
    std::array<HANDLE, 2> handles = {files.at(0), argument == "closed" ? closed : files.at(0)};
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::vector<char> memory(size);
    auto* const list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory.data()); // its type is nobody's to know
    InitializeProcThreadAttributeList(list, 1, 0, &size);
    std::string result;
    if (UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(), sizeof handles, nullptr,
                                  nullptr) == FALSE) {
        result = "error " + std::to_string(GetLastError());
    } else {
        result = startBare(probeLine(names), list, TRUE, nullptr);
    }
    DeleteProcThreadAttributeList(list);
    return saying(result);
}

// Several vectors travel in one run: the probe prints them all, a line each. It checks too that the system's own rules
// give what the C runtime's do.
Answer oddArguments(const std::string& /*argument*/, const Names& names)
{
    constexpr int vectors = 400;
    constexpr int together = 20;
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same vectors each time: reports compare
    int whole = 0;
    for (int begun = 0; begun < vectors; begun += together) {
        std::vector<std::string> all;
        for (int i = 0; i < together; ++i) {
            const std::vector<std::string> arguments = oddVector(random);
            all.insert(all.end(), arguments.begin(), arguments.end());
        }
        std::vector<std::string> line = {names.get("<probe>"), "arguments"};
        line.insert(line.end(), all.begin(), all.end());
        const Answer printed = runProgram({line});
        whole += printed.status == 0 && printed.output == inHex(all) ? together : 0;
    }
    return saying(std::to_string(whole) + " of " + std::to_string(vectors));
}

Answer keptPipe(const std::string& /*argument*/, const Names& names)
{
    constexpr std::chrono::milliseconds timeout(1000);
    constexpr std::chrono::milliseconds longest(8000);
    ExitReport report;
    RunOptions options;
    options.setStreamTimeout(timeout);
    options.setExitCallback([&report](const ExitReport& ended, void*) { report = ended; });
    const auto begin = std::chrono::steady_clock::now();
    orb::process::detail::run({names.get("<probe>"), "leave-behind", "sleep", "15000"}, {}, {}, false, options);
    const auto took = std::chrono::steady_clock::now() - begin;
    if (!report.streamsAbandoned) {
        return saying("not abandoned");
    }
    return saying(took >= timeout && took < longest ? "abandoned after about a second" : "abandoned at another time");
}

// The grandchild waits for a file, and makes another: when it lives.
Answer endedTree(const std::string& /*argument*/, const Names& names)
{
    const std::filesystem::path folder = pathOf(names.get("<work>"));
    const auto go = folder / "tree-go";
    const auto done = folder / "tree-done";
    const auto there = folder / "tree-there";
    RunOptions options;
    options.setTerminatesTree(true);
    options.setTerminationHandler([&] {
        std::error_code error;
        return interrupted() || std::filesystem::exists(there, error);
    });
    orb::process::detail::run({names.get("<probe>"), "keep-company", "relay", utf8(go), utf8(done), utf8(there)}, {},
                              {}, false, options);
    std::ofstream(go) << "";
    return saying(appears(done, std::chrono::milliseconds(2000)) ? "lives" : "ended");
}

Answer longCommandLine(const std::string& argument, const Names& names)
{
    const std::vector<std::string> begin = {names.get("<probe>"), "exit", "0", "x"};
    const std::size_t units = pathOf(orb::process::detail::joinArguments(begin)).native().size() - 1;
    const std::string rest(std::stoul(argument) - units, 'x');
    const Answer answer = runProgram({{names.get("<probe>"), "exit", "0", rest}});
    return saying(answer.status == notStarted ? answer.output : "status " + std::to_string(answer.status));
}

Answer bareEnvironment(const std::string& /*argument*/, const Names& names)
{
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size())));
    std::wstring block = L"SystemRoot=" + folder + L'\0';
    return saying(startBare(probeLine(names), nullptr, FALSE, block.data()));
}

} // namespace verify
