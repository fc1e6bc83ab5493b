#include "terminal/interruption.h"

#include "terminal/windows/console_events.h"

#include <atomic>

#include <windows.h>

namespace kelpctl {
namespace {

std::atomic<bool> wasInterrupted{false};
std::atomic<bool> endsWork{false};

BOOL give(const EventAnswer& answer)
{
    if (answer.interrupts) {
        wasInterrupted = true;
    }
    if (answer.timeout.count() > 0) {
        Sleep(static_cast<DWORD>(answer.timeout.count()));
    }
    return answer.handled ? TRUE : FALSE;
}

BOOL WINAPI endWork(DWORD event)
{
    return give(answerAtWork(event, wasInterrupted));
}

BOOL WINAPI leaveToProgram(DWORD event)
{
    return give(answerForProgram(event));
}

} // namespace

struct Interruption::State {
    PHANDLER_ROUTINE handler;
};

bool interrupted() noexcept
{
    return wasInterrupted;
}

bool interruptionEndsWork() noexcept
{
    return endsWork;
}

Interruption::Interruption(Meaning meaning)
    : state_(std::make_unique<State>(State{meaning == Meaning::endWork ? endWork : leaveToProgram}))
{
    wasInterrupted = false;
    SetConsoleCtrlHandler(state_->handler, TRUE);
    endsWork = meaning == Meaning::endWork;
}

Interruption::~Interruption()
{
    endsWork = false;
    SetConsoleCtrlHandler(state_->handler, FALSE);
}

} // namespace kelpctl
