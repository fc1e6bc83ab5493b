#include "bare_process.h"

#include "host/process.h"
#include "host/text.h"

#include <array>
#include <system_error>
#include <thread>

#include <windows.h>

namespace benchmarks {

namespace {

void check(BOOL success)
{
    if (success == FALSE) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "the floor");
    }
}

struct Pipe {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
};

// Only the program's end is for it to inherit.
Pipe makePipe()
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe pipe;
    check(CreatePipe(&pipe.readEnd, &pipe.writeEnd, &inheritable, 0));
    check(SetHandleInformation(pipe.readEnd, HANDLE_FLAG_INHERIT, 0));
    return pipe;
}

void readAll(HANDLE pipe, std::string& text)
{
    std::array<char, 65536> buffer; // is read into
    DWORD size = 0;
    while (ReadFile(pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &size, nullptr) != FALSE && size > 0) {
        text.append(buffer.data(), size);
    }
    CloseHandle(pipe);
}

HANDLE start(const BareProcess& process, const Pipe& output, const Pipe& error)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.writeEnd;
    startup.hStdError = error.writeEnd;
    PROCESS_INFORMATION information{};
    std::wstring commandLine = process.commandLine;
    std::wstring environment = process.environment;
    check(CreateProcessW(process.file.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                         CREATE_NO_WINDOW | CREATE_UNICODE_ENVIRONMENT,
                         environment.empty() ? nullptr : environment.data(),
                         process.folder.empty() ? nullptr : process.folder.c_str(), &startup, &information));
    CloseHandle(information.hThread);
    CloseHandle(output.writeEnd);
    CloseHandle(error.writeEnd);
    return information.hProcess;
}

std::wstring wide(const std::string& text)
{
    const std::u16string units = foundation::core::text::cvt_utf8_ustring(text);
    return {units.begin(), units.end()};
}

} // namespace

Captured runBare(const BareProcess& process)
{
    const Pipe output = makePipe();
    const Pipe error = makePipe();
    const HANDLE started = start(process, output, error);
    Captured captured;
    std::thread errorReader(readAll, error.readEnd, std::ref(captured.error));
    readAll(output.readEnd, captured.output);
    errorReader.join();
    DWORD status = 0;
    check(WaitForSingleObject(started, INFINITE) == WAIT_OBJECT_0 && GetExitCodeProcess(started, &status) != FALSE);
    CloseHandle(started);
    captured.status = static_cast<std::int32_t>(status);
    return captured;
}

Captured runFloor(const Arguments& arguments)
{
    return runBare({wide(arguments.front()), wide(orb::process::detail::joinArguments(arguments)), {}, {}});
}

} // namespace benchmarks
