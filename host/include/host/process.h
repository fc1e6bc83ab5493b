// The process service: runs one program with an argument vector and gives back what it printed.
//
// No shell is involved: each argument reaches the program as one argument, byte for byte. A program inherits exactly
// three handles (standard input, output and error) and no other, on every system, also while other threads start
// programs of their own. Nothing here keeps state between calls; every function may be called from any thread.
#pragma once

#include "host/command_line.h"
#include "host/export.h"
#include "host/run_options.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orb::process::detail {

// Variable name to value, both UTF-8.
using Environment = std::map<std::string, std::string>;

struct RunResult {
    // As the program reported it: 0 to 255 on Linux, where death by a signal counts as 128 plus its number; the 32-bit
    // exit code on Windows, so that 0xFFFFFFFF reads -1.
    std::int32_t status = 0;
    // The bytes as captured, without any conversion.
    std::string standardOutput;
    std::string standardError;
    // There was no such program, so none has run: status and standardError are run()'s own.
    bool programMissing = false;
};

// Runs `arguments[0]` with the rest as its arguments and waits for it to end.
//
// arguments    UTF-8; on Windows the program also as a look-up command printed it (cvt_string_ustring() of text.h).
//              A program given with a directory separator is used as it stands, from the caller's current folder when
//              it is relative; a bare name is looked up in the absolute entries of the PATH that the program is given
//              (`environment`'s, otherwise the caller's) only, never in the current folder or the folder of the
//              running program. On Windows ".exe" is added to a bare name without an extension.
// environment  Added to the inherited environment; an entry replaces the inherited one of that name. On Windows names
//              compare without case, the program gets them as the caller writes them, and WSLENV is always in upper
//              case: WSL looks names up exactly.
// workingDir   UTF-8; empty means the caller's current folder. A drive designator alone ("c:") means that drive's
//              current folder on Windows and the caller's folder elsewhere.
// detach       Do not wait: streams are the null device, and the result is all empty. The options are not used then.
//
// A program that does not exist, or whose name is empty, is no exception but a run that failed: the status is 127, as
// shells report it, and one line on standard error names the program. So a look-up command that is not installed reads
// like one that found nothing; `programMissing` tells it from a program that ended with 127 itself. Handlers are not
// called then. With `detach` it is an exception.
//
// Throws std::system_error with the system's own code when the program cannot be started for any other reason (what()
// names the program), and std::invalid_argument for what cannot be passed faithfully: an empty vector, an
// embedded NUL, the name of a variable that is empty or holds "=", text that is not UTF-8 on Windows, a program name
// with a double quote on Windows, a .bat or .cmd file on any system. A status other than zero is not an error. An
// exception from a handler ends the program and passes to the caller.
KORVANE_HOST_API RunResult run(const std::vector<std::string>& arguments, const Environment& environment = {},
                               const std::string& workingDir = {}, bool detach = false, const RunOptions& options = {});

// Sees every run() of the process, whichever component asks for it: a program that embeds others shows by it what it
// waits for, and quotes from it when something fails. Detached runs are not seen.
//
// Each call comes on the thread that runs the program, those of one run in the order below.
class KORVANE_HOST_API RunObserver {
public:
    RunObserver() = default;
    RunObserver(const RunObserver&) = delete;
    RunObserver& operator=(const RunObserver&) = delete;
    virtual ~RunObserver();
    // The program is about to be started. `options` are a copy of the caller's; what is changed there counts for this run.
    // An exception keeps the program from being started, and passes to the caller of run().
    virtual void starting(const std::vector<std::string>& arguments, RunOptions& options) = 0;
    // Asked like a termination handler, in addition to it: true ends the program.
    virtual bool shouldTerminate() = 0;
    // How the run ended; null when run() throws.
    virtual void ended(const std::vector<std::string>& arguments, const RunResult* result) noexcept = 0;
};

// Makes `observer` see the runs that start from now on; null means that nobody does. Gives back the one before. An
// observer must live until the runs that it has seen starting have ended.
KORVANE_HOST_API RunObserver* observeRuns(RunObserver* observer) noexcept;

// Runs a program with the caller's own standard streams, and on Windows its console, and gives back its exit status; where
// the caller has no console, none is shown. Arguments, environment,
// working folder and errors are those of run(), except that a program that does not exist is a std::system_error here
// (errc::no_such_file_or_directory).
KORVANE_HOST_API std::int32_t runAttached(const std::vector<std::string>& arguments,
                                          const Environment& environment = {}, const std::string& workingDir = {});

} // namespace orb::process::detail
