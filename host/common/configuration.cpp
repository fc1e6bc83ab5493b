#include "host/configuration.h"

#include "channel_masks.h"

#include <mutex>

namespace foundation::core::config {
namespace {

struct State {
    std::mutex mutex;
    Configuration configuration;
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
    diag::channelMasks()->configure(configuration.channelMasks);
}

Configuration configuration()
{
    const std::lock_guard lock(state().mutex);
    return state().configuration;
}

} // namespace foundation::core::config
