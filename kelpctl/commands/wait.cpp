#include "commands/wait.h"

#include "asking/docker.h"
#include "asking/run.h"
#include "terminal/interruption.h"

#include "lvm/commands.h"

#include "orb/lvm.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

namespace kelpctl {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds pause(500);
constexpr milliseconds shortestLimit(1000);

bool answers(const Context& context, const std::string& client)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return askEngine(context.programs, client).reachable();
    }
    return ask(context.programs, orb::lvm::detail::commands::wslList(client)).succeeded();
}

void sleepUntil(Clock::time_point end)
{
    constexpr milliseconds step(50);
    while (Clock::now() < end && !interrupted()) {
        std::this_thread::sleep_for(step);
    }
}

} // namespace

void waitForBackend(const Context& context)
{
    const Clock::time_point end = Clock::now() + context.request.wait;
    // The library looks for its program once; that must not be cut short.
    const std::string client =
        context.request.wait.count() > 0 ? orb::lvm::getContainerExecutablePath() : std::string();
    while (!client.empty() && Clock::now() < end && !interrupted()) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        context.journal.limitEachRun(std::max(left, shortestLimit));
        if (answers(context, client)) {
            context.journal.forget(); // that it did not answer before explains nothing
            break;
        }
        sleepUntil(std::min(end, Clock::now() + pause));
    }
    context.journal.limitEachRun(std::nullopt);
}

} // namespace kelpctl
