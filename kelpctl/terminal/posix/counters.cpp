#include "terminal/counters.h"

#include <fstream>
#include <string>
#include <system_error>

#include <sys/stat.h>

namespace kelpctl {

std::optional<std::uint64_t> sizeOfOpened(const std::filesystem::path& file)
{
    struct stat found = {};
    if (::stat(file.c_str(), &found) != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(found.st_size);
}

std::optional<std::uint64_t> bytesReadBy(std::uint32_t processId, const std::filesystem::path& file)
{
    namespace fs = std::filesystem;
    const fs::path process = fs::path("/proc") / std::to_string(processId);
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        if (fs::equivalent(entry->path(), file, gone)) {
            std::ifstream description(process / "fdinfo" / entry->path().filename());
            std::string label;
            std::uint64_t position = 0;
            return description >> label >> position && label == "pos:" ? std::optional(position) : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace kelpctl
