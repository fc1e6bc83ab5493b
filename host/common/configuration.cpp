#include "configuration_state.h"

#include "host/configuration.h"

#include <deque>
#include <mutex>

namespace foundation::core::config {
namespace {

struct State {
    std::mutex mutex;
    Configuration configuration;
    // Every release text that was ever given out: callers keep the pointer for the life of the process.
    std::deque<std::string> releases;
};

State& state()
{
    static State instance;
    return instance;
}

} // namespace

void configure(const Configuration& configuration)
{
    {
        const std::lock_guard lock(state().mutex);
        state().configuration = configuration;
    }
    diag::applyMasks(configuration.channelMasks);
}

Configuration configuration()
{
    const std::lock_guard lock(state().mutex);
    return state().configuration;
}

const char* keepRelease(const std::string& release)
{
    const std::lock_guard lock(state().mutex);
    for (const std::string& kept : state().releases) {
        if (kept == release) {
            return kept.c_str();
        }
    }
    return state().releases.emplace_back(release).c_str();
}

} // namespace foundation::core::config
