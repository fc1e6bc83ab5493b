// Diagnostic logging on named channels, carried by Boost.Log.
//
// Channel names form a tree, the levels separated by ":" ("orb:lvm:wsl" lies under "orb:lvm"). Each channel has an
// enablement mask; a channel that is not configured takes the mask of its nearest configured ancestor, and 0
// when there is none. Records reach the process-wide Boost.Log core with the attributes "Channel" (std::string) and
// "Severity" (int, the level's number), so any Boost.Log sink of the host program receives them; attach_sink() serves
// programs that do not want to know Boost.Log. All functions may be called from any thread.
#pragma once

#include "host/export.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace foundation::core::diag {

// One source of records. Any thread may write through it.
class KORVANE_HOST_API basic_diagnostic_logger {
public:
    // A logger for the channel `channel` (UTF-8).
    explicit basic_diagnostic_logger(const char* channel);
    // The same, with the ancestor named: a channel that is not configured takes the mask of `parent`.
    basic_diagnostic_logger(const char* channel, const char* parent);
    ~basic_diagnostic_logger();

    basic_diagnostic_logger(const basic_diagnostic_logger&) = delete;
    basic_diagnostic_logger& operator=(const basic_diagnostic_logger&) = delete;

    // The channel's mask. It follows configure() while the logger lives.
    std::uint32_t mask() const noexcept { return mask_->load(std::memory_order_relaxed); }

private:
    friend class record;
    struct Source;
    std::unique_ptr<Source> source_;
    const std::atomic<std::uint32_t>* mask_;
};

// One record: opened with a severity, streamed into, pushed to the core. A record that is not pushed is dropped.
class KORVANE_HOST_API record {
public:
    record(basic_diagnostic_logger& logger, std::uint32_t severity);
    ~record();

    record(const record&) = delete;
    record& operator=(const record&) = delete;

    // False when the core's filters reject the record: nothing needs to be formatted then.
    explicit operator bool() const noexcept;
    // Formats in the classic locale, whatever the program's global locale is, and flags as 1 and 0. Only valid while
    // *this is true.
    std::ostream& stream();
    // Hands the record to the core. Only valid while *this is true; the record is empty afterwards.
    void push();

private:
    struct State;
    std::unique_ptr<State> state_;
};

// A record as a sink receives it. `message` is the text as it was written: it may hold line ends, and bytes that are
// no UTF-8 where a program's output was logged (UTF-16 by wsl.exe); text::readable() makes it fit for people.
struct log_record {
    std::chrono::system_clock::time_point time;
    std::string channel;
    std::uint32_t severity = 0;
    std::string thread;
    std::string message;
};

// Keeps a sink attached while it lives.
class KORVANE_HOST_API sink_handle {
public:
    struct State;
    explicit sink_handle(std::unique_ptr<State> state);
    sink_handle(sink_handle&&) noexcept;
    sink_handle& operator=(sink_handle&&) noexcept;
    ~sink_handle();

private:
    std::unique_ptr<State> state_;
};

// Calls `sink` for every record from now on, one call at a time. The sink must not log.
[[nodiscard]] KORVANE_HOST_API sink_handle attach_sink(std::function<void(const log_record&)> sink);

} // namespace foundation::core::diag
