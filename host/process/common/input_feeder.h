// Writes what an input handler gives to a program's standard input.
#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace orb::process::detail {

// The end of a program's standard input that we write to.
class InputSink {
public:
    virtual ~InputSink() = default;

    // Writes all of it, waiting as long as it takes. False when nobody reads any more, or after interrupt().
    virtual bool write(std::string_view piece) = 0;

    // The program sees the end of its input. Nothing is written afterwards.
    virtual void close() noexcept = 0;

    // Ends a write that waits, and all later ones. May be called from any thread at any time.
    virtual void interrupt() noexcept = 0;
};

// The thread that asks the handler and writes, so that a program that does not read cannot stop the reading of its
// output. It always waits for a handler's call to return.
class InputFeeder {
public:
    InputFeeder(const std::function<std::string()>& handler, std::unique_ptr<InputSink> sink);
    ~InputFeeder();
    InputFeeder(const InputFeeder&) = delete;
    InputFeeder& operator=(const InputFeeder&) = delete;

    // Whether the handler or the writing has thrown.
    bool failed() const noexcept { return failed_; }

    // Stops writing. Throws what the handler threw.
    void finish();

private:
    void feed(const std::function<std::string()>& handler);

    std::unique_ptr<InputSink> sink_;
    std::atomic<bool> stopped_ = false;
    std::atomic<bool> failed_ = false;
    std::exception_ptr failure_;
    std::thread thread_;
};

} // namespace orb::process::detail
