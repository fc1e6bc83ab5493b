#include "terminal/progress.h"

#include "terminal/text.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

namespace kelpctl {

struct Progress::Worker {
    std::ostream& stream;
    Look look;
    ProgressOptions options;
    std::chrono::steady_clock::time_point start;
    // No std::jthread, whose stop token wakes a waiting thread: with GCC's library for Windows that may wait for ever.
    std::mutex mutex;
    std::condition_variable stopped;
    bool stop = false;
    // Of the line that stands.
    std::size_t length = 0;
    std::thread thread;

    // False once the thread is asked to stop.
    bool wait()
    {
        std::unique_lock lock(mutex);
        return !stopped.wait_for(lock, options.interval, [this] { return stop; });
    }

    void end()
    {
        {
            const std::scoped_lock lock(mutex);
            stop = true;
        }
        stopped.notify_all();
        thread.join();
    }

    // Blanks instead of control sequences, which a Windows console may not know.
    void erase()
    {
        if (length > 0) {
            stream << '\r' + std::string(length, ' ') + '\r' << std::flush;
            length = 0;
        }
    }

    void draw(const std::string& line)
    {
        if (line.empty()) {
            erase();
            return;
        }
        const std::string rest(length > line.size() ? length - line.size() : 0, ' ');
        stream << '\r' + line + rest << std::flush;
        length = line.size() + rest.size();
    }

    // Each in one piece, so that what others write to the same file stands in front or behind.
    void print(const std::vector<std::string>& notices)
    {
        for (const std::string& notice : notices) {
            erase();
            stream << notice + '\n' << std::flush;
        }
    }

    void show()
    {
        const std::chrono::steady_clock::time_point now = options.clock();
        const ProgressView view = look(now, std::chrono::floor<std::chrono::seconds>(now - start));
        print(view.notices);
        draw(view.line);
    }

    void work()
    {
        while (wait()) {
            try {
                show();
            } catch (const std::exception&) {
            }
        }
        erase();
    }
};

Progress::Progress(std::ostream& stream, Look look, ProgressOptions options)
    : worker_(new Worker{stream, std::move(look), std::move(options), {}, {}, {}, false, 0, {}})
{
    worker_->start = worker_->options.clock();
    worker_->thread = std::thread(&Worker::work, worker_.get());
}

Progress::~Progress()
{
    worker_->end();
}

std::string progressLine(const std::string& label, const std::string& awaited, std::chrono::seconds elapsed,
                         std::size_t columns)
{
    const std::string what = escaped(awaited);
    const std::string end = " ... " + std::to_string(elapsed.count()) + " s";
    std::string text = label + (what.empty() ? "" : ": ") + what;
    text.resize(std::min(text.size(), columns - std::min(columns, end.size())));
    return text + end;
}

} // namespace kelpctl
