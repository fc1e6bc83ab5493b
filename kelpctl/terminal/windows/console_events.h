// What the console may ask of kelpctl, and what kelpctl answers.
#pragma once

#include <chrono>

namespace kelpctl {

struct EventAnswer {
    // Whether the event is dealt with. Otherwise the next handler has its turn, in the end the system's, which ends the
    // process.
    bool handled;
    // Whether the work, or the program that shares the console, is to be ended.
    bool interrupts;
    // How long the handler may keep the system waiting. It ends the process as soon as the handler has returned, and
    // after 5 s in any case; a process that is done meanwhile ends by itself.
    std::chrono::milliseconds timeout;
};

// While kelpctl works. `event` is a number of the system's (CTRL_C_EVENT and so on); `wasInterrupted` tells whether one
// came before.
EventAnswer answerAtWork(unsigned long event, bool wasInterrupted);

// While a program shares the console.
EventAnswer answerForProgram(unsigned long event);

} // namespace kelpctl
