#include "commands/log.h"

#include "failure/failure.h"
#include "terminal/text.h"

#include "host/text.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>

namespace kelpctl {
namespace {

using foundation::core::diag::log_record;

constexpr char channelRoot[] = "orb";

std::string levelWord(std::uint32_t severity)
{
    switch (severity) {
    case detailLevel:
        return "detail";
    case errorLevel:
        return "error";
    default:
        return std::to_string(severity);
    }
}

bool isOurs(const std::string& channel)
{
    return channel == channelRoot || channel.starts_with(std::string(channelRoot) + ":");
}

std::ofstream openLogFile(const std::string& name)
{
    const std::filesystem::path path(foundation::core::text::cvt_utf8_ustring(name));
    std::ofstream file(path, std::ios::app | std::ios::binary);
    if (!file) {
        throw Failure("LOG_FILE_NOT_WRITABLE", name);
    }
    return file;
}

} // namespace

std::uint32_t channelMask(LogLevel level)
{
    switch (level) {
    case LogLevel::detail:
        return detailLevel | errorLevel;
    case LogLevel::error:
        return errorLevel;
    case LogLevel::none:
        break;
    }
    return 0;
}

std::string logLine(const log_record& record, const std::vector<std::string>& secrets)
{
    // A secret may be there as it was given, or only come to light when UTF-16 is made readable.
    const std::string readable = foundation::core::text::readable(redacted(record.message, secrets));
    return isoTime(record.time) + " " + record.channel + " " + levelWord(record.severity) + " " + record.thread + " " +
           escaped(redacted(readable, secrets));
}

struct Log::Parts {
    std::ofstream file;
    std::optional<foundation::core::diag::sink_handle> sink;
};

Log::Log(const Request& request, std::ostream& error) : parts_(std::make_unique<Parts>())
{
    if (request.log == LogLevel::none) {
        return;
    }
    std::ostream* target = &error;
    if (request.logFile) {
        parts_->file = openLogFile(*request.logFile);
        target = &parts_->file;
    }
    parts_->sink =
        foundation::core::diag::attach_sink([target, secrets = secretsOf(request)](const log_record& record) {
            if (isOurs(record.channel)) {
                *target << logLine(record, secrets) + '\n' << std::flush;
            }
        });
}

Log::~Log() = default;

} // namespace kelpctl
