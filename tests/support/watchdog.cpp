#include "watchdog.h"

#include <cstdlib>
#include <iostream>

Watchdog::Watchdog(std::chrono::milliseconds limit)
    : limit_(limit), deadline_(std::chrono::steady_clock::now() + limit), thread_([this] { watch(); })
{
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(mutex_);
        finished_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void Watchdog::testStarted(const std::string& name)
{
    const std::lock_guard lock(mutex_);
    test_ = name;
    deadline_ = std::chrono::steady_clock::now() + limit_;
}

void Watchdog::watch()
{
    std::unique_lock lock(mutex_);
    while (!finished_) {
        if (std::chrono::steady_clock::now() >= deadline_) {
            std::cerr << "watchdog: " << test_ << " took more than " << limit_.count() << " ms" << std::endl;
            std::abort();
        }
        // A later test moves the deadline, so the one known now may be too early, and never too late.
        changed_.wait_until(lock, deadline_);
    }
}
