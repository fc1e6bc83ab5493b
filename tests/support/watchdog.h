// Ends a test program that hangs, and tells which test it was.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

class Watchdog {
public:
    explicit Watchdog(std::chrono::milliseconds limit);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    // From now on the limit counts for this test.
    void testStarted(const std::string& name);

private:
    void watch();

    const std::chrono::milliseconds limit_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string test_ = "before the first test";
    std::chrono::steady_clock::time_point deadline_;
    bool finished_ = false;
    std::thread thread_;
};
