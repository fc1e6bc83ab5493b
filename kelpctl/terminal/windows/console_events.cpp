#include "terminal/windows/console_events.h"

#include <windows.h>

namespace kelpctl {
namespace {

using namespace std::chrono_literals;

bool isTyped(DWORD event)
{
    return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
}

} // namespace

EventAnswer answerAtWork(unsigned long event, bool wasInterrupted)
{
    if (isTyped(event)) {
        // The second time the system's own handler ends the process.
        return {!wasInterrupted, !wasInterrupted, 0ms};
    }
    // The window is closed, the user logs off or the system shuts down: the programs at work hear nothing of it.
    return {true, true, 4s};
}

EventAnswer answerForProgram(unsigned long event)
{
    // A console that goes away takes kelpctl along; the program hears of it by itself.
    return {isTyped(event), isTyped(event), 0ms};
}

} // namespace kelpctl
