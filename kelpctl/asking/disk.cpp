#include "asking/disk.h"

#include "terminal/counters.h"
#include "terminal/registrations.h"

#include "host/files.h"
#include "host/text.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <vector>

namespace kelpctl {
namespace {

DiskState stateOf(const std::filesystem::path& path)
{
    namespace host = foundation::core::path;
    try {
        if (host::exists(path)) {
            return DiskState::present;
        }
        return host::exists(path.root_path()) ? DiskState::gone : DiskState::unreachable;
    } catch (const std::filesystem::filesystem_error&) {
        return DiskState::unreachable;
    }
}

// Empty for what is no text.
std::string utf8(const std::filesystem::path& path)
{
    try {
        return foundation::core::text::cvt_ustring_utf8(path.u16string());
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

std::optional<Disk> diskOf(const std::string& distribution)
{
    const std::vector<Registration> all = registrations();
    const auto found = std::find_if(all.begin(), all.end(), [&distribution](const Registration& each) {
        return each.name == distribution && each.installed && !each.disk.empty();
    });
    if (found == all.end()) {
        return std::nullopt;
    }
    const DiskState state = stateOf(found->disk);
    return Disk{utf8(found->disk), state, state == DiskState::present ? sizeOfOpened(found->disk) : std::nullopt};
}

} // namespace kelpctl
