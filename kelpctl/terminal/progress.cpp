#include "terminal/progress.h"

#include "terminal/text.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

namespace kelpctl {

struct Progress::Worker {
    std::ostream& terminal;
    std::string label;
    ProgressOptions options;
    std::chrono::steady_clock::time_point start;
    std::mutex mutex;
    std::condition_variable_any stopped;
    // The last member: it ends before the others go.
    std::jthread thread;

    std::string line() const
    {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(options.clock() - start).count();
        const std::string awaited = escaped(options.awaited());
        const std::string end = " ... " + std::to_string(seconds) + " s";
        std::string text = label + (awaited.empty() ? "" : ": ") + awaited;
        text.resize(std::min(text.size(), options.columns - std::min(options.columns, end.size())));
        return text + end;
    }

    // False once the thread is asked to stop.
    bool wait(const std::stop_token& stop)
    {
        std::unique_lock lock(mutex);
        stopped.wait_for(lock, stop, options.interval, [] { return false; });
        return !stop.stop_requested();
    }

    // Blanks instead of control sequences, which a Windows console may not know.
    void erase(std::size_t length)
    {
        if (length > 0) {
            terminal << '\r' << std::string(length, ' ') << '\r' << std::flush;
        }
    }

    void draw(const std::stop_token& stop)
    {
        std::size_t length = 0;
        while (wait(stop)) {
            const std::string text = line();
            const std::string rest(length > text.size() ? length - text.size() : 0, ' ');
            terminal << '\r' << text << rest << std::flush;
            length = text.size() + rest.size();
        }
        erase(length);
    }
};

Progress::Progress(std::ostream& terminal, const std::string& label, ProgressOptions options)
    : worker_(new Worker{terminal, label, std::move(options), {}, {}, {}, {}})
{
    worker_->start = worker_->options.clock();
    worker_->thread = std::jthread([worker = worker_.get()](const std::stop_token& stop) { worker->draw(stop); });
}

Progress::~Progress() = default;

} // namespace kelpctl
