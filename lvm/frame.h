// The frame that the other rooms of the library stand in: switches, channels, errors and names.
#pragma once

#include "orb/lvm.h"

#include "host/diagnostics.h"
#include "host/exceptions.h"

#include <cstdint>
#include <exception>
#include <ostream>
#include <string>
#include <utility>

namespace orb::lvm::detail {

using foundation::core::diag::basic_diagnostic_logger;

// Switches. Each is read from the environment at each call, except that a USE_WSL once found set is kept.

bool useWsl();
bool useDockerRepository();
bool additionalLoggingEnabled();

// Channels. Each getter gives the logger of its channel, or that of "orb:lvm" while the channel's mask is clear.

basic_diagnostic_logger& commonLogger();
basic_diagnostic_logger& dockerLogger();
basic_diagnostic_logger& wslLogger();

enum class Level : std::uint32_t { Detail = 8, Error = 512 };

// The bits of a mask that stand for levels.
inline constexpr std::uint32_t significantBits = 0x7FFF;

inline bool isEnabled(const basic_diagnostic_logger& logger, Level level)
{
    return (logger.mask() & static_cast<std::uint32_t>(level) & significantBits) != 0;
}

// Writes one message: its parts one after the other. Nothing is formatted unless the logger is enabled for the level.
template <class... Parts>
void log(basic_diagnostic_logger& logger, Level level, const Parts&... parts)
{
    if (!isEnabled(logger, level)) {
        return;
    }
    foundation::core::diag::record record(logger, static_cast<std::uint32_t>(level));
    if (record) {
        (record.stream() << ... << parts);
        record.push();
    }
}

// Throws the catalogue error that the tag `ID` stands for.
template <class ID, class... Arguments>
[[noreturn]] void throwError(ID, const Arguments&... arguments)
{
    throw foundation::core::except::Exception<ID, std::exception, void>(
        {container_support::catalogue, ID::identifier, {std::string(arguments)...}});
}

// The name and the tag of the hub image in the registry: the stem, directly followed by the default image name.
std::string hubTag();

} // namespace orb::lvm::detail
