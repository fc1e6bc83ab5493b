// Questions to the system that may take any time, as one for a file on a drive that is not there does.
#pragma once

#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace kelpctl {

// What the probe gives back; nothing when it throws, or needs longer. Then it goes on by itself for as long as the process
// lives, so that it must own all that it uses.
template <class Probe>
auto within(std::chrono::milliseconds limit, Probe probe) -> std::optional<decltype(probe())>
{
    using Answer = decltype(probe());
    try {
        auto task = std::make_shared<std::packaged_task<Answer()>>(std::move(probe));
        std::future<Answer> answer = task->get_future();
        std::thread worker([task] { (*task)(); });
        // One that was answered is waited for: with mingw-w64's threads, one that is let go while it ends may take the place
        // of the next one, which then never runs.
        if (answer.wait_for(limit) == std::future_status::ready) {
            worker.join();
            return answer.get();
        }
        worker.detach();
    } catch (const std::exception&) {
        // Not known.
    }
    return std::nullopt;
}

} // namespace kelpctl
