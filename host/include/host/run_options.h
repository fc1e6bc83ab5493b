// What a program is run with, beside its command line, and how its run ended.
#pragma once

#include "host/export.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace orb::process::detail {

enum class Stream { output, error };

// How a run ended, beyond its status. Made by run() only; members may come at the end.
struct ExitReport {
    std::int32_t status = 0;
    // The signal that ended the program, 0 when it exited by itself. Always 0 on Windows.
    int signal = 0;
    // The program was ended because the termination handler asked for it; with terminatesTree() perhaps only what the
    // program, which had exited by itself, had left behind.
    bool terminated = false;
    // The program exited, but another process kept its streams open beyond the stream time-out; what that
    // process prints later is lost.
    bool streamsAbandoned = false;
};

// How run() deals with a program. A value, whose copies have nothing in common.
class KORVANE_HOST_API RunOptions {
public:
    RunOptions();
    ~RunOptions();
    RunOptions(const RunOptions& other);
    RunOptions& operator=(const RunOptions& other);

    // Asked about ten times a second while the program runs; returning true ends the program at once, without a chance to
    // clean up (SIGKILL, TerminateProcess), and its descendants only with setTerminatesTree().
    void setTerminationHandler(std::function<bool()> handler);
    const std::function<bool()>& terminationHandler() const noexcept;

    // Whether the descendants of a program that is ended (by the termination handler, or an exception of a handler) end
    // with it, down to the last. Off unless set. A program that ends by itself leaves them running; but as long as they
    // keep its streams open, the termination handler is asked, and ends them.
    //
    // The program has a job (Windows, from 10 on) or a session (Linux) of its own for this from its first moment. What
    // leaves that on purpose is not ended: what is started with CREATE_BREAKAWAY_FROM_JOB; what makes a session or process
    // group of its own, as daemons do, and shells with job control. Nor is what another program starts on request, such
    // as a service. On Linux the program has no terminal then: Ctrl-C there does not reach it, and it cannot ask there.
    void setTerminatesTree(bool whole) noexcept;
    bool terminatesTree() const noexcept;

    // Sees each piece of output as it arrives, in addition to its being captured.
    void setOutputLogger(std::function<void(Stream, std::string_view)> logger);
    const std::function<void(Stream, std::string_view)>& outputLogger() const noexcept;

    // Gives the next piece for the program's standard input; an empty string means end of input. Without it,
    // standard input is the null device. It is asked from a thread of its own, one call at a time, and run() does not
    // return before the last call has.
    void setInputHandler(std::function<std::string()> handler);
    const std::function<std::string()>& inputHandler() const noexcept;

    // After the program has exited its streams are read until they end, or until nothing has come for this long, so
    // that a helper process that keeps a pipe open cannot hang the caller: five seconds when it is not set. For a
    // program that was ended on request it is half a second at most.
    void setStreamTimeout(std::chrono::milliseconds timeout) noexcept;
    std::chrono::milliseconds streamTimeout() const noexcept;

    // Called once, on the caller's thread, when the program has started, with the number that the system knows it by. That
    // is nobody else's while the program runs.
    void setStartCallback(std::function<void(std::uint32_t processId, void* userObject)> callback);
    const std::function<void(std::uint32_t processId, void* userObject)>& startCallback() const noexcept;

    // Called once, on the caller's thread, when the program has ended and its streams are read.
    void setExitCallback(std::function<void(const ExitReport&, void* userObject)> callback);
    const std::function<void(const ExitReport&, void* userObject)>& exitCallback() const noexcept;

    // Passed to both callbacks, otherwise untouched. Null when it is not set.
    void setUserObject(void* object) noexcept;
    void* userObject() const noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace orb::process::detail
