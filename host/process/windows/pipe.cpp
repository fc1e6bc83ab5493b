#include "pipe.h"

#include "random_bits.h"
#include "system_error.h"

#include <algorithm>
#include <array>
#include <string>

namespace orb::process::detail {

using foundation::core::system::lastError;

namespace {

// What the system keeps of a stream before its writer must wait.
constexpr DWORD pipeSize = 64 * 1024;

// The system's pipes all share one folder. A name that nobody can guess cannot be taken by another process, nor by
// another module of this one.
std::wstring pipeName()
{
    std::wstring name = LR"(\\.\pipe\korvane-)";
    for (const unsigned char byte : foundation::core::path::randomBits()) {
        constexpr wchar_t digits[] = L"0123456789abcdef";
        name += digits[byte >> 4];
        name += digits[byte & 15];
    }
    return name;
}

Handle makeEvent()
{
    Handle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!event) {
        throw lastError("cannot create an event");
    }
    return event;
}

// Broken, or its writer has closed its end.
bool isEndOfStream(DWORD error)
{
    return error == ERROR_BROKEN_PIPE || error == ERROR_PIPE_NOT_CONNECTED || error == ERROR_HANDLE_EOF;
}

class PipeSink final : public InputSink {
public:
    explicit PipeSink(Handle pipe) : pipe_(std::move(pipe)), done_(makeEvent()), interrupted_(makeEvent()) {}

    bool write(std::string_view piece) override
    {
        while (!piece.empty()) {
            const DWORD written = writeOnce(piece.substr(0, pipeSize));
            if (written == 0) {
                return false;
            }
            piece.remove_prefix(written);
        }
        return true;
    }

    void close() noexcept override { pipe_.close(); }

    void interrupt() noexcept override { SetEvent(interrupted_.get()); }

private:
    // 0 when nobody reads any more, or after interrupt().
    DWORD writeOnce(std::string_view piece)
    {
        OVERLAPPED write{};
        write.hEvent = done_.get();
        if (WriteFile(pipe_.get(), piece.data(), static_cast<DWORD>(piece.size()), nullptr, &write) == FALSE &&
            GetLastError() != ERROR_IO_PENDING) {
            return 0;
        }
        const std::array<HANDLE, 2> waits{done_.get(), interrupted_.get()};
        if (WaitForMultipleObjects(static_cast<DWORD>(waits.size()), waits.data(), FALSE, INFINITE) != WAIT_OBJECT_0) {
            CancelIoEx(pipe_.get(), &write);
        }
        DWORD written = 0;
        return GetOverlappedResult(pipe_.get(), &write, &written, TRUE) != FALSE ? written : 0;
    }

    Handle pipe_;
    Handle done_;
    Handle interrupted_;
};

} // namespace

Pipe makePipe(Direction direction)
{
    const std::wstring name = pipeName();
    const DWORD ourAccess = direction == Direction::fromProgram ? PIPE_ACCESS_INBOUND : PIPE_ACCESS_OUTBOUND;
    const DWORD programsAccess = direction == Direction::fromProgram ? GENERIC_WRITE | FILE_READ_ATTRIBUTES
                                                                     : GENERIC_READ | FILE_WRITE_ATTRIBUTES;
    Pipe pipe;
    pipe.ours = Handle(CreateNamedPipeW(name.c_str(), ourAccess | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                        PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, pipeSize, pipeSize,
                                        0, nullptr));
    if (!pipe.ours) {
        throw lastError("cannot create a pipe");
    }
    pipe.programs = Handle(CreateFileW(name.c_str(), programsAccess, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!pipe.programs) {
        throw lastError("cannot open a pipe");
    }
    return pipe;
}

Handle openNullDevice()
{
    Handle device(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, 0, nullptr));
    if (!device) {
        throw lastError("cannot open the null device");
    }
    return device;
}

PipeReader::PipeReader(Handle pipe) : pipe_(std::move(pipe)), event_(makeEvent()) {}

PipeReader::~PipeReader()
{
    if (reading_) {
        DWORD size = 0;
        CancelIoEx(pipe_.get(), &read_);
        GetOverlappedResult(pipe_.get(), &read_, &size, TRUE);
    }
}

void PipeReader::begin(std::span<char> buffer)
{
    // The system may set memory aside for as much as it is asked for.
    constexpr std::size_t mostAtOnce = std::size_t{1024} * 1024;
    const auto size = static_cast<DWORD>(std::min(buffer.size(), mostAtOnce));
    read_ = {};
    read_.hEvent = event_.get();
    if (ReadFile(pipe_.get(), buffer.data(), size, nullptr, &read_) != FALSE || GetLastError() == ERROR_IO_PENDING) {
        reading_ = true;
    } else if (isEndOfStream(GetLastError())) {
        pipe_.close();
    } else {
        throw lastError("cannot read what a program prints");
    }
}

std::optional<std::size_t> PipeReader::finish()
{
    DWORD size = 0;
    if (GetOverlappedResult(pipe_.get(), &read_, &size, FALSE) != FALSE) {
        reading_ = false;
        return size;
    }
    const DWORD error = GetLastError();
    if (error == ERROR_IO_INCOMPLETE) {
        return std::nullopt;
    }
    reading_ = false;
    if (!isEndOfStream(error)) {
        throw lastError("cannot read what a program prints");
    }
    pipe_.close();
    return 0;
}

std::unique_ptr<InputSink> makeInputSink(Handle pipe)
{
    return std::make_unique<PipeSink>(std::move(pipe));
}

} // namespace orb::process::detail
