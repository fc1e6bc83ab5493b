// The log: what the library and the host write on the channels "orb" and below, one line a record.
#pragma once

#include "request/request.h"

#include "host/diagnostics.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace kelpctl {

// The levels of the host's diagnostics, each a bit of a channel's mask.
inline constexpr std::uint32_t detailLevel = 8;
inline constexpr std::uint32_t errorLevel = 512;

// The mask of the channel "orb" for what the user asked for.
std::uint32_t channelMask(LogLevel level);

// "<UTC time> <channel> <level> <thread> <message>", without a line end. The message is made readable, the secrets are
// taken out of it, and its control characters are written out.
std::string logLine(const foundation::core::diag::log_record& record, const std::vector<std::string>& secrets);

// Writes the log while it lives: to `error`, or to the end of the request's log file. Values that the
// user gave with "-e" never appear. Throws Failure when the file cannot be opened.
class Log {
public:
    Log(const Request& request, std::ostream& error);
    ~Log();

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace kelpctl
