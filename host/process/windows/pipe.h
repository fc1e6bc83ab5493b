// Pipes between this process and a program, and the null device.
#pragma once

#include "handle.h"
#include "input_feeder.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace orb::process::detail {

using foundation::core::system::Handle;

enum class Direction { fromProgram, toProgram };

// No program inherits either end by itself. Our end does not wait; the program's end does, as ordinary programs
// expect it.
struct Pipe {
    Handle ours;
    Handle programs;
};

// Throws std::system_error.
Pipe makePipe(Direction direction);

// Throws std::system_error.
Handle openNullDevice();

// Reads a pipe, piece by piece. The memory of a read that goes on must outlive the reader.
class PipeReader {
public:
    // Throws std::system_error.
    explicit PipeReader(Handle pipe);
    ~PipeReader();
    PipeReader(const PipeReader&) = delete;
    PipeReader& operator=(const PipeReader&) = delete;

    // Whether the stream has ended.
    bool ended() const noexcept { return !pipe_; }
    bool reading() const noexcept { return reading_; }

    // Begins a read, unless the stream turns out to have ended. Throws std::system_error.
    void begin(std::span<char> buffer);

    // Signalled when the read is done.
    HANDLE event() const noexcept { return event_.get(); }

    // The size of the piece when the read is done: 0 at the end of the stream. Nothing while it still goes on.
    std::optional<std::size_t> finish();

private:
    Handle pipe_;
    Handle event_;
    OVERLAPPED read_{};
    bool reading_ = false;
};

// A sink that writes to the pipe. Throws std::system_error.
std::unique_ptr<InputSink> makeInputSink(Handle pipe);

} // namespace orb::process::detail
