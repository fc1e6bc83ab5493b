// Questions to the system that may take any time, as one for a file on a drive that is not there does.
#pragma once

#include <algorithm>
#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace kelpctl {

inline std::chrono::milliseconds leftUntil(std::chrono::steady_clock::time_point end)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
}

// What the probe gives back; nothing when it throws, or needs longer. Then it goes on by itself for as long as the process
// lives, so that it must own all that it uses.
template <class Probe>
auto within(std::chrono::milliseconds limit, Probe probe) -> std::optional<decltype(probe())>
{
    using Answer = decltype(probe());
    try {
        auto task = std::make_shared<std::packaged_task<Answer()>>(std::move(probe));
        std::future<Answer> answer = task->get_future();
        std::thread([task] { (*task)(); }).detach();
        // Under Wine a waiting thread was seen to sleep on although the answer was there; so it looks now and then.
        constexpr std::chrono::milliseconds slice(50);
        const auto end = std::chrono::steady_clock::now() + limit;
        for (auto left = limit; left.count() > 0; left = leftUntil(end)) {
            if (answer.wait_for(std::min(left, slice)) == std::future_status::ready) {
                return answer.get();
            }
        }
    } catch (const std::exception&) {
        // Not known.
    }
    return std::nullopt;
}

} // namespace kelpctl
