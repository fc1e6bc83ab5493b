#include "relays.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace stand_in {
namespace {

// What a pipe holds.
constexpr std::size_t enough = 65536;

bool isTerminal(int stream)
{
    return ::isatty(stream) != 0;
}

// False when nobody reads any more.
bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready = {descriptor, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool receive(int endings, Ending& ending)
{
    for (;;) {
        const ssize_t count = ::read(endings, &ending, sizeof ending);
        if (count >= 0 || errno != EINTR) {
            return count == static_cast<ssize_t>(sizeof ending);
        }
    }
}

} // namespace

void takeStreams(const std::array<int, 3>& streams)
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::dup2(streams[static_cast<std::size_t>(stream)], stream);
    }
}

Relays::Relays()
{
    ::signal(SIGPIPE, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const auto index = static_cast<std::size_t>(stream);
        std::array<int, 2> ends{};
        if (isTerminal(stream) || ::pipe2(ends.data(), O_CLOEXEC) != 0) {
            continue;
        }
        const bool in = stream == STDIN_FILENO;
        inside_[index] = ends[in ? 0 : 1];
        outside_[index] = ends[in ? 1 : 0];
        ::fcntl(outside_[index], F_SETFL, O_NONBLOCK);
    }
}

Relays::~Relays()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        close(stream);
    }
}

void Relays::closeInside()
{
    for (const int end : inside_) {
        if (end > STDERR_FILENO) {
            ::close(end);
        }
    }
}

void Relays::close(int stream)
{
    int& end = outside_[static_cast<std::size_t>(stream)];
    if (end >= 0) {
        ::close(end);
        end = -1;
    }
}

void Relays::takeInput()
{
    input_.resize(enough);
    const ssize_t count = ::read(STDIN_FILENO, input_.data(), input_.size());
    inputEnded_ = count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN);
    input_.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (inputEnded_) {
        close(STDIN_FILENO);
    }
}

void Relays::giveInput()
{
    const ssize_t count = ::write(outside_[STDIN_FILENO], input_.data(), input_.size());
    if (count > 0) {
        input_.erase(0, static_cast<std::size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
        close(STDIN_FILENO);
    }
}

// As much as a pipe holds. The end is reached when the last program that had the stream is gone.
void Relays::passOutput(int stream)
{
    const int end = outside_[static_cast<std::size_t>(stream)];
    if (end < 0) {
        return;
    }
    std::array<char, enough> buffer{};
    const ssize_t count = ::read(end, buffer.data(), buffer.size());
    if (count == 0 || (count > 0 && !writeAll(stream, {buffer.data(), static_cast<std::size_t>(count)}))) {
        close(stream);
    }
}

std::optional<Ending> Relays::copyUntilEnd(int endings)
{
    for (;;) {
        const bool wantsInput = outside_[STDIN_FILENO] >= 0;
        const bool hasInput = !input_.empty();
        std::array<pollfd, 5> watched = {pollfd{endings, POLLIN, 0}, pollfd{outside_[STDOUT_FILENO], POLLIN, 0},
                                         pollfd{outside_[STDERR_FILENO], POLLIN, 0},
                                         pollfd{wantsInput && !hasInput ? STDIN_FILENO : -1, POLLIN, 0},
                                         pollfd{wantsInput && hasInput ? outside_[STDIN_FILENO] : -1, POLLOUT, 0}};
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            continue;
        }
        passOutput(STDOUT_FILENO);
        passOutput(STDERR_FILENO);
        if (watched[3].revents != 0) {
            takeInput();
        }
        if (watched[4].revents != 0) {
            giveInput();
        }
        if (watched[0].revents != 0) {
            Ending ending;
            const bool came = receive(endings, ending);
            // What the program wrote at its end; what others write from now on is lost.
            passOutput(STDOUT_FILENO);
            passOutput(STDERR_FILENO);
            return came ? std::optional(ending) : std::nullopt;
        }
    }
}

} // namespace stand_in
