#include "bare_process.h"

#include "room.h"

#include "host/process.h"
#include "host/text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <system_error>

#include <windows.h>

namespace benchmarks {

namespace {

void check(bool success)
{
    if (!success) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "the floor");
    }
}

// Ours waits for nothing, so that one thread can read two of them. Only the program's end is for it to inherit.
struct Pipe {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    OVERLAPPED read{};
    bool open = true;
};

std::wstring newName()
{
    static std::atomic<unsigned> number = 0;
    return LR"(\\.\pipe\floor-)" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(++number);
}

Pipe makePipe()
{
    constexpr DWORD size = 65536;
    const std::wstring name = newName();
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe pipe;
    pipe.readEnd = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED,
                                    PIPE_TYPE_BYTE | PIPE_WAIT, 1, size, size, 0, nullptr);
    check(pipe.readEnd != INVALID_HANDLE_VALUE);
    pipe.writeEnd = CreateFileW(name.c_str(), GENERIC_WRITE, 0, &inheritable, OPEN_EXISTING, 0, nullptr);
    check(pipe.writeEnd != INVALID_HANDLE_VALUE);
    pipe.read.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    check(pipe.read.hEvent != nullptr);
    return pipe;
}

void close(Pipe& pipe)
{
    pipe.open = false;
    CloseHandle(pipe.readEnd);
    CloseHandle(pipe.read.hEvent);
}

// Asks for what comes next; the pipe's event tells when it is there.
void beginRead(Pipe& pipe, const Room& room)
{
    const auto size = static_cast<DWORD>(std::min<std::size_t>(room.freeSize(), 1U << 20U));
    if (ReadFile(pipe.readEnd, room.free(), size, nullptr, &pipe.read) == FALSE && GetLastError() != ERROR_IO_PENDING) {
        close(pipe);
    }
}

void endRead(Pipe& pipe, Room& room)
{
    DWORD size = 0;
    if (GetOverlappedResult(pipe.readEnd, &pipe.read, &size, FALSE) == FALSE) {
        close(pipe);
        return;
    }
    room.add(size);
    beginRead(pipe, room);
}

void readBoth(std::array<Pipe, 2>& pipes, std::array<Room, 2>& rooms)
{
    for (std::size_t i = 0; i < pipes.size(); ++i) {
        beginRead(pipes[i], rooms[i]);
    }
    while (pipes[0].open || pipes[1].open) {
        std::array<HANDLE, 2> events{};
        std::array<std::size_t, 2> owners{};
        DWORD count = 0;
        for (std::size_t i = 0; i < pipes.size(); ++i) {
            if (pipes[i].open) {
                owners[count] = i;
                events[count++] = pipes[i].read.hEvent;
            }
        }
        const DWORD signalled = WaitForMultipleObjects(count, events.data(), FALSE, INFINITE);
        check(signalled < count);
        endRead(pipes[owners[signalled]], rooms[owners[signalled]]);
    }
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
                         process.folder.empty() ? nullptr : process.folder.c_str(), &startup, &information) != FALSE);
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

Captured runBare(const BareProcess& process, const Sizes& expected)
{
    std::array<Pipe, 2> pipes{makePipe(), makePipe()};
    std::array<Room, 2> rooms{Room(expected.output), Room(expected.error)};
    const HANDLE started = start(process, pipes[0], pipes[1]);
    readBoth(pipes, rooms);
    DWORD status = 0;
    check(WaitForSingleObject(started, INFINITE) == WAIT_OBJECT_0 && GetExitCodeProcess(started, &status) != FALSE);
    CloseHandle(started);
    return {static_cast<std::int32_t>(status), {rooms[0].used(), rooms[1].used()}};
}

Captured runFloor(const Arguments& arguments, const Sizes& expected)
{
    return runBare({wide(arguments.front()), wide(orb::process::detail::joinArguments(arguments)), {}, {}}, expected);
}

} // namespace benchmarks
