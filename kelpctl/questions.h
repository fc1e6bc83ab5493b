// Questions that give up on a program that hangs.
#pragma once

#include "context.h"
#include "probes.h"

#include <string>
#include <vector>

namespace kelpctl {

enum class Ending { notAsked, answered, failed, notStarted, timedOut };

// How a question to a program ended. Texts are readable UTF-8.
struct Reply {
    Ending ending = Ending::notAsked;
    std::vector<std::string> arguments;
    // Nothing when the program was not started.
    std::optional<std::int32_t> status;
    // Cut where it is longer than any answer.
    std::string output;
    // What it printed on standard error, or why it could not be started.
    std::string error;

    bool good() const { return ending == Ending::answered; }
    bool asked() const { return ending != Ending::notAsked; }
};

// Of a run that somebody else started.
Reply replyOf(const Run& run);

// Of a question that has just been asked; the journal knows whether it took too long.
Reply replyOf(const Answer& answer, const RunJournal& journal);

// Runs the program. Throws Failure("INTERRUPTED") once the user has interrupted kelpctl.
Reply question(const Context& context, const std::vector<std::string>& arguments);

} // namespace kelpctl
