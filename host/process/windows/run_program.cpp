#include "run_program.h"

#include "child.h"
#include "pipe.h"
#include "run_session.h"
#include "start.h"
#include "system_error.h"

#include <array>

#include <windows.h>

namespace orb::process::detail {

using foundation::core::system::lastError;

namespace {

// Our end of one of the program's streams.
struct Source {
    Stream stream;
    PipeReader reader;
};
using Sources = std::array<Source, 2>;

// Begins to read where nothing is being read.
void beginReads(Sources& sources, RunSession& session)
{
    for (Source& source : sources) {
        if (!source.reader.ended() && !source.reader.reading()) {
            source.reader.begin(session.buffer(source.stream));
        }
    }
}

// Takes what has been read.
void finishReads(Sources& sources, RunSession& session)
{
    for (Source& source : sources) {
        if (source.reader.reading()) {
            const std::optional<std::size_t> size = source.reader.finish();
            if (size.value_or(0) > 0) {
                session.commit(source.stream, *size);
            }
        }
    }
}

// Waits until a read is done, the program exits or a time limit passes. Whether the program was seen to exit.
bool wait(const Child& child, const Sources& sources, const RunSession& session)
{
    // Of several that are signalled the system names the first.
    std::array<HANDLE, 3> waits{};
    DWORD count = 0;
    if (!session.hasExited()) {
        waits[count++] = child.exitEvent();
    }
    for (const Source& source : sources) {
        if (source.reader.reading()) {
            waits[count++] = source.reader.event();
        }
    }
    if (count == 0) {
        return false;
    }
    const std::optional<std::chrono::milliseconds> limit = session.timeout();
    const DWORD timeout = limit ? static_cast<DWORD>(limit->count()) : INFINITE;
    const DWORD signalled = WaitForMultipleObjects(count, waits.data(), FALSE, timeout);
    if (signalled == WAIT_FAILED) {
        throw lastError("cannot wait for a program");
    }
    return signalled == WAIT_OBJECT_0 && !session.hasExited();
}

bool haveEnded(const Sources& sources)
{
    return sources[0].reader.ended() && sources[1].reader.ended();
}

// Reads both streams until the program has exited and they have ended. False when they were given up.
bool readStreams(const Child& child, Sources& sources, RunSession& session)
{
    while (!session.hasExited() || !haveEnded(sources)) {
        beginReads(sources, session);
        const bool exited = wait(child, sources, session);
        finishReads(sources, session);
        if (exited) {
            session.programExited();
        }
        if (session.streamsOverdue()) {
            break;
        }
        if (session.shouldTerminate()) {
            child.kill();
        }
    }
    return haveEnded(sources);
}

// A copy of one of this process's own streams; the null device where it has none.
Handle ownStream(DWORD stream)
{
    const HANDLE own = GetStdHandle(stream);
    HANDLE copy = nullptr;
    if (own != nullptr && own != INVALID_HANDLE_VALUE &&
        DuplicateHandle(GetCurrentProcess(), own, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS) !=
            FALSE) {
        return Handle(copy);
    }
    return openNullDevice();
}

} // namespace

void startDetached(const std::vector<std::string>& arguments, const Environment& environment,
                   const std::string& workingDir)
{
    startProgram({arguments, environment, workingDir, {openNullDevice(), openNullDevice(), openNullDevice()}});
}

RunResult runProgram(const std::vector<std::string>& arguments, const Environment& environment,
                     const std::string& workingDir, const RunOptions& options)
{
    Pipe output = makePipe(Direction::fromProgram);
    Pipe error = makePipe(Direction::fromProgram);
    Pipe input = options.inputHandler() ? makePipe(Direction::toProgram) : Pipe{{}, openNullDevice()};
    RunSession session(options);
    Sources sources{
        {{Stream::output, PipeReader(std::move(output.ours))}, {Stream::error, PipeReader(std::move(error.ours))}}};
    Child child({arguments,
                 environment,
                 workingDir,
                 {std::move(input.programs), std::move(output.programs), std::move(error.programs)},
                 options.terminatesTree()});
    if (options.startCallback()) {
        options.startCallback()(child.id(), options.userObject());
    }
    if (options.inputHandler()) {
        session.feed(makeInputSink(std::move(input.ours)));
    }
    const bool complete = readStreams(child, sources, session);
    ExitReport report = child.wait();
    report.streamsAbandoned = !complete;
    return session.finish(report);
}

std::int32_t runProgramAttached(const std::vector<std::string>& arguments, const Environment& environment,
                                const std::string& workingDir)
{
    Child child({arguments,
                 environment,
                 workingDir,
                 {ownStream(STD_INPUT_HANDLE), ownStream(STD_OUTPUT_HANDLE), ownStream(STD_ERROR_HANDLE)},
                 false,
                 true});
    return child.wait().status;
}

} // namespace orb::process::detail
