#include "asking/settings_file.h"

#include "host/files.h"

#include <exception>
#include <fstream>

namespace kelpctl {

std::optional<std::string> settingsFile(const std::filesystem::path& file)
{
    constexpr std::size_t longest = 1 << 20;
    try {
        if (!foundation::core::path::is_regular_file(file)) {
            return std::nullopt;
        }
        std::ifstream stream(file, std::ios::binary);
        std::string text(longest + 1, '\0');
        stream.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(stream.gcount()));
        return stream.eof() && !stream.bad() ? std::optional(text) : std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace kelpctl
