#include "terminal/interruption.h"

#include <atomic>

#include <windows.h>

namespace kelpctl {
namespace {

std::atomic<bool> wasInterrupted{false};

// The second time the system's own handler ends the process.
BOOL WINAPI endWork(DWORD /*event*/)
{
    return wasInterrupted.exchange(true) ? FALSE : TRUE;
}

// A console that goes away takes kelpctl along.
BOOL WINAPI leaveToProgram(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    wasInterrupted = true;
    return TRUE;
}

} // namespace

struct Interruption::State {
    PHANDLER_ROUTINE handler;
};

bool interrupted() noexcept
{
    return wasInterrupted;
}

Interruption::Interruption(Meaning meaning)
    : state_(std::make_unique<State>(State{meaning == Meaning::endWork ? endWork : leaveToProgram}))
{
    wasInterrupted = false;
    SetConsoleCtrlHandler(state_->handler, TRUE);
}

Interruption::~Interruption()
{
    SetConsoleCtrlHandler(state_->handler, FALSE);
}

} // namespace kelpctl
