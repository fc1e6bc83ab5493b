// Child programs: the one shape of what came of one, whoever started it, and the one seam for those that kelpctl starts
// itself. Tests put answers of their own behind it.
#pragma once

#include "host/process.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

enum class Ending {
    notAsked,
    exited,
    notStarted,
    // It was ended because it took longer than the time limit, or because the user interrupted kelpctl.
    timedOut,
    interrupted,
};

struct Run {
    Ending ending = Ending::notAsked;
    std::vector<std::string> arguments;
    // Nothing when the program was not started.
    std::optional<std::int32_t> status;
    // The beginning of what it printed, 1 MiB at most, as readable UTF-8. For one that was not started `error` says why,
    // where that is known.
    std::string output;
    std::string error;
    // All that it printed, byte for byte: for paths, and for whoever passes it on.
    std::string captured;
    std::string capturedError;
    // The streams were the user's own; what went there is not known.
    bool attached = false;
    // There was no such program: the status is the process service's own.
    bool programMissing = false;

    bool asked() const { return ending != Ending::notAsked; }
    bool succeeded() const { return ending == Ending::exited && status == 0; }
};

// The only place where captured bytes become text.
Run runOf(const std::vector<std::string>& arguments, const orb::process::detail::RunResult& result,
          Ending ending = Ending::exited);
Run runThatDidNotStart(const std::vector<std::string>& arguments, const std::string& reason);

// How a program ended that was, or was not, ended on request.
Ending endingOf(bool terminated);

// The run that tells most about a failure: the last one that failed, or else the last one. Looking for a program is no
// failure when another way of looking has found one.
std::optional<Run> decisiveRun(const std::vector<Run>& runs);

// "wsl.exe --import kelp_hub": the program's file name and the first arguments that say what it does.
std::string shortCommand(const std::vector<std::string>& arguments);

// The programs that kelpctl starts itself. Each throws what the process service throws for a program that cannot be started.
struct Programs {
    // Runs a program in a folder, the current one when that is empty, and captures what it prints.
    std::function<Run(const std::vector<std::string>& arguments, const orb::process::detail::Environment& environment,
                      const std::string& folder)>
        run;
    // Runs a program with this process's own streams and gives back its exit status.
    std::function<std::int32_t(const std::vector<std::string>& arguments,
                               const orb::process::detail::Environment& environment)>
        runAttached;
};

// Those of the process service.
Programs systemPrograms();

// Asks a program something: runs it, and throws nothing when that fails. wsl.exe is asked for UTF-8 and for no warnings.
Run ask(const Programs& programs, const std::vector<std::string>& arguments, const std::string& folder = {});

} // namespace kelpctl
