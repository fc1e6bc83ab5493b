#include "terminal/interruption.h"

#include <array>
#include <atomic>
#include <csignal>

namespace kelpctl {
namespace {

std::atomic<bool> wasInterrupted{false};
std::atomic<bool> endsWork{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may use nothing else");

void note(int /*signal*/)
{
    wasInterrupted = true;
}

constexpr std::array endingSignals = {SIGINT, SIGTERM, SIGHUP};
constexpr std::array terminalSignals = {SIGINT, SIGQUIT};

} // namespace

struct Interruption::State {
    // The handlers before, by signal.
    std::array<struct sigaction, NSIG> before{};
    std::array<bool, NSIG> changed{};

    void handle(int signal, void (*handler)(int), int flags)
    {
        struct sigaction action {};
        action.sa_handler = handler;
        action.sa_flags = flags;
        sigemptyset(&action.sa_mask);
        const auto index = static_cast<std::size_t>(signal);
        changed[index] = sigaction(signal, &action, &before[index]) == 0;
    }
};

bool interrupted() noexcept
{
    return wasInterrupted;
}

bool interruptionEndsWork() noexcept
{
    return endsWork;
}

// Programs that are started meanwhile do not inherit a handler, while they would inherit that a signal is ignored.
Interruption::Interruption(Meaning meaning) : state_(std::make_unique<State>())
{
    wasInterrupted = false;
    if (meaning == Meaning::endWork) {
        for (const int signal : endingSignals) {
            state_->handle(signal, note, static_cast<int>(SA_RESETHAND));
        }
    } else {
        for (const int signal : terminalSignals) {
            state_->handle(signal, note, SA_RESTART);
        }
    }
    endsWork = meaning == Meaning::endWork;
}

Interruption::~Interruption()
{
    endsWork = false;
    for (std::size_t signal = 0; signal < state_->changed.size(); ++signal) {
        if (state_->changed[signal]) {
            sigaction(static_cast<int>(signal), &state_->before[signal], nullptr);
        }
    }
}

} // namespace kelpctl
