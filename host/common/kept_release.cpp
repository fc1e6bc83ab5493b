#include "kept_release.h"

#include <deque>
#include <mutex>

namespace foundation::core::config {
namespace {

struct KeptReleases {
    std::mutex mutex;
    // Callers keep the pointers for the life of the process.
    std::deque<std::string> texts;
};

KeptReleases& keptReleases()
{
    static KeptReleases instance;
    return instance;
}

} // namespace

const char* keepRelease(const std::string& release)
{
    KeptReleases& releases = keptReleases();
    const std::lock_guard lock(releases.mutex);
    for (const std::string& kept : releases.texts) {
        if (kept == release) {
            return kept.c_str();
        }
    }
    return releases.texts.emplace_back(release).c_str();
}

} // namespace foundation::core::config
