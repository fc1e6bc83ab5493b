// What the wait loops of both systems have in common.
#pragma once

#include "capture.h"
#include "host/process.h"
#include "input_feeder.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

namespace orb::process::detail {

// The state of one run while it goes on: the output so far, whose turn it is among the handlers, and the time
// limits. The options must outlive it.
class RunSession {
public:
    using Clock = std::chrono::steady_clock;

    // The time that limits are counted in.
    using Now = Clock::time_point (*)();

    explicit RunSession(const RunOptions& options, Now now = Clock::now)
        : options_(options), now_(now), nextPoll_(now() + pollInterval)
    {
    }

    // Feeds the program's standard input from now on.
    void feed(std::unique_ptr<InputSink> sink) { feeder_.emplace(options_.inputHandler(), std::move(sink)); }

    // Where the stream's next bytes go.
    std::span<char> buffer(Stream stream) { return capture(stream).buffer(); }

    // `size` bytes were read into the stream's buffer.
    void commit(Stream stream, std::size_t size);

    // Whether what the run consists of is to be ended now: the termination handler asks for it, or the input handler has
    // failed. To be asked after every wait.
    bool shouldTerminate();

    void programExited();
    bool hasExited() const noexcept { return exited_; }

    // How long the next wait may take at most; nothing means for ever.
    std::optional<std::chrono::milliseconds> timeout() const;

    // The program has exited and its streams have been silent for too long.
    bool streamsOverdue() const { return exited_ && now_() >= streamDeadline_; }

    // Ends the feeding, calls the exit callback and gives the result. Throws what the input handler threw.
    RunResult finish(ExitReport report);

private:
    static constexpr std::chrono::milliseconds pollInterval{100};
    static constexpr std::chrono::milliseconds terminatedStreamTimeout{500};

    Capture& capture(Stream stream) { return stream == Stream::output ? output_ : error_; }
    // Whether there is anybody to ask from time to time, and anything left to end.
    bool polls() const
    {
        return !terminated_ && (!exited_ || options_.terminatesTree()) && (options_.terminationHandler() || feeder_);
    }
    void extendStreamDeadline();

    const RunOptions& options_;
    const Now now_;
    Capture output_;
    Capture error_;
    std::optional<InputFeeder> feeder_;
    Clock::time_point nextPoll_;
    Clock::time_point streamDeadline_;
    bool exited_ = false;
    bool terminated_ = false;
};

} // namespace orb::process::detail
