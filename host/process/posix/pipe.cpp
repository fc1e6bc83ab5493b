#include "pipe.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace orb::process::detail {

namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::system_category(), what);
}

// A program's streams are put on 0 to 2 one after the other. An end that lay there, because this process runs without
// one of its own streams, would be overwritten.
Descriptor aboveStandardStreams(Descriptor descriptor)
{
    if (descriptor.get() > STDERR_FILENO) {
        return descriptor;
    }
    Descriptor moved(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved) {
        fail("cannot duplicate a pipe");
    }
    return moved;
}

class PipeSink final : public InputSink {
public:
    explicit PipeSink(Descriptor writeEnd)
        : pipe_(std::move(writeEnd)), interrupted_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (!interrupted_ || ::fcntl(pipe_.get(), F_SETFL, O_NONBLOCK) != 0) {
            fail("cannot prepare a pipe");
        }
    }

    bool write(std::string_view piece) override
    {
        blockBrokenPipeSignal();
        while (!piece.empty()) {
            if (!waitForRoom()) {
                return false;
            }
            const ssize_t written = ::write(pipe_.get(), piece.data(), piece.size());
            if (written > 0) {
                piece.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno == EPIPE) {
                return false;
            } else if (errno != EAGAIN && errno != EINTR) { // uncovered: a signal at that very moment
                fail("cannot write to a program");
            }
        }
        return true;
    }

    void close() noexcept override { pipe_.close(); }

    void interrupt() noexcept override
    {
        // Cannot fail: the counter is far from full.
        static_cast<void>(::eventfd_write(interrupted_.get(), 1));
    }

private:
    // The signal goes to the thread that wrote, and this thread is the feeder's own: it ends with the signal pending.
    static void blockBrokenPipeSignal()
    {
        sigset_t signals;
        ::sigemptyset(&signals);
        ::sigaddset(&signals, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    }

    // False after interrupt().
    bool waitForRoom()
    {
        std::array<pollfd, 2> waits{{{pipe_.get(), POLLOUT, 0}, {interrupted_.get(), POLLIN, 0}}};
        while (::poll(waits.data(), waits.size(), -1) < 0) {
            if (errno != EINTR) {
                fail("cannot wait for a program");
            }
        }
        return waits[1].revents == 0;
    }

    Descriptor pipe_;
    Descriptor interrupted_;
};

} // namespace

Pipe makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail("cannot create a pipe");
    }
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    pipe.readEnd = aboveStandardStreams(std::move(pipe.readEnd));
    pipe.writeEnd = aboveStandardStreams(std::move(pipe.writeEnd));
    return pipe;
}

void enlarge(const Descriptor& pipe) noexcept
{
    constexpr int largePipe = 1024 * 1024;
    ::fcntl(pipe.get(), F_SETPIPE_SZ, largePipe);
}

std::unique_ptr<InputSink> makeInputSink(Descriptor writeEnd)
{
    return std::make_unique<PipeSink>(std::move(writeEnd));
}

} // namespace orb::process::detail
