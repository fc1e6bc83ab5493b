#include "run_program.h"

#include "child.h"
#include "pipe.h"
#include "run_session.h"
#include "start.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <future>
#include <optional>
#include <system_error>
#include <thread>

#include <poll.h>
#include <unistd.h>

namespace orb::process::detail {

namespace {

// Our end of one of the program's streams, closed when the stream has ended.
struct Source {
    Stream stream;
    Descriptor readEnd;
    bool enlarged = false;
};
using Sources = std::array<Source, 2>;

// Without a descriptor that tells of the exit, this often.
constexpr std::chrono::milliseconds exitCheckInterval{20};

// Reads once. There is something to read, or the end of the stream.
void readOnce(Source& source, RunSession& session)
{
    const std::span<char> buffer = session.buffer(source.stream);
    const ssize_t size = ::read(source.readEnd.get(), buffer.data(), buffer.size());
    if (size > 0) {
        session.commit(source.stream, static_cast<std::size_t>(size));
        if (!source.enlarged && static_cast<std::size_t>(size) == buffer.size()) {
            enlarge(source.readEnd);
            source.enlarged = true;
        }
    } else if (size == 0) {
        source.readEnd.close();
    } else if (errno != EINTR) {
        throw std::system_error(errno, std::system_category(), "cannot read what a program prints");
    }
}

int pollTimeout(const RunSession& session, const Child& child)
{
    std::optional<std::chrono::milliseconds> timeout = session.timeout();
    if (!session.hasExited() && child.exitEvent() < 0) {
        timeout = std::min(timeout.value_or(exitCheckInterval), exitCheckInterval);
    }
    return timeout ? static_cast<int>(timeout->count()) : -1;
}

// Waits until something happens, and reads what there is.
void waitAndRead(const Child& child, Sources& sources, RunSession& session)
{
    const int exitEvent = session.hasExited() ? -1 : child.exitEvent();
    std::array<pollfd, 3> waits{
        {{sources[0].readEnd.get(), POLLIN, 0}, {sources[1].readEnd.get(), POLLIN, 0}, {exitEvent, POLLIN, 0}}};
    if (::poll(waits.data(), waits.size(), pollTimeout(session, child)) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::system_category(), "cannot wait for a program");
        }
        return;
    }
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (waits[i].revents != 0) {
            readOnce(sources[i], session);
        }
    }
    if (!session.hasExited() && (exitEvent < 0 ? child.hasExited() : waits[2].revents != 0)) {
        session.programExited();
    }
}

bool haveEnded(const Sources& sources)
{
    return !sources[0].readEnd && !sources[1].readEnd;
}

// Reads both streams until the program has exited and they have ended. False when they were given up.
bool readStreams(const Child& child, Sources& sources, RunSession& session)
{
    while (!session.hasExited() || !haveEnded(sources)) {
        waitAndRead(child, sources, session);
        if (session.streamsOverdue()) {
            break;
        }
        if (session.shouldTerminate()) {
            child.kill();
        }
    }
    return haveEnded(sources);
}

// In place of a process's id: no program was started.
constexpr pid_t noProgram = 0;

// Waits for the program's end, out of the way of the host's signals.
void awaitEnd(std::future<pid_t> program)
{
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
    const pid_t id = program.get();
    int status = 0;
    if (id != noProgram) {
        waitForEnd(id, status);
    }
}

} // namespace

// Somebody has to take note of the program's end. The thread that does so is there before the program is, so that
// nothing can go wrong once the program runs.
void startDetached(const std::vector<std::string>& arguments, const Environment& environment,
                   const std::string& workingDir)
{
    std::promise<pid_t> program;
    std::thread(awaitEnd, program.get_future()).detach();
    try {
        program.set_value(
            startProgram({arguments, environment, workingDir, {nullDevice, nullDevice, nullDevice}, true}));
    } catch (...) {
        program.set_value(noProgram);
        throw;
    }
}

RunResult runProgram(const std::vector<std::string>& arguments, const Environment& environment,
                     const std::string& workingDir, const RunOptions& options)
{
    Pipe output = makePipe();
    Pipe error = makePipe();
    Pipe input = options.inputHandler() ? makePipe() : Pipe{};
    RunSession session(options);
    const std::array<int, 3> streams{input.readEnd.get(), output.writeEnd.get(), error.writeEnd.get()};
    Child child({arguments, environment, workingDir, streams, options.terminatesTree()});
    input.readEnd.close();
    output.writeEnd.close();
    error.writeEnd.close();
    if (options.startCallback()) {
        options.startCallback()(child.id(), options.userObject());
    }
    if (options.inputHandler()) {
        session.feed(makeInputSink(std::move(input.writeEnd)));
    }
    Sources sources{{{Stream::output, std::move(output.readEnd)}, {Stream::error, std::move(error.readEnd)}}};
    const bool complete = readStreams(child, sources, session);
    ExitReport report = child.wait();
    report.streamsAbandoned = !complete;
    return session.finish(report);
}

std::int32_t runProgramAttached(const std::vector<std::string>& arguments, const Environment& environment,
                                const std::string& workingDir)
{
    const std::array<int, 3> streams{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    Child child({arguments, environment, workingDir, streams});
    return child.wait().status;
}

} // namespace orb::process::detail
