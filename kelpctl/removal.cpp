#include "removal.h"

#include "errors.h"
#include "gateways.h"
#include "log.h"

#include "host/configuration.h"
#include "host/diagnostics.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <functional>

namespace kelpctl {
namespace {

using foundation::core::config::Configuration;
using foundation::core::diag::log_record;

// The channel that the library logs a failed removal on, at the error level: one record for what the command
// printed on standard output, one for standard error, each "<words> = <what was printed>". Nothing else is logged
// there at that level, so any such record during the call means that it failed.
constexpr char removalChannel[] = "orb:lvm:common";
constexpr char textStart[] = " = ";

std::string printedText(const std::string& message)
{
    const std::size_t start = message.find(textStart);
    const std::string text = start == std::string::npos ? message : message.substr(start + sizeof(textStart) - 1);
    return foundation::core::text::readable(text);
}

// Switches the error level of the channel on while it lives; the levels of its ancestor stay as they are.
class ErrorLevel {
public:
    ErrorLevel() : before_(foundation::core::config::configuration())
    {
        Configuration configuration = before_;
        configuration.channelMasks[removalChannel] = configuration.channelMasks["orb"] | errorLevel;
        foundation::core::config::configure(configuration);
    }
    ~ErrorLevel() { foundation::core::config::configure(before_); }

    ErrorLevel(const ErrorLevel&) = delete;
    ErrorLevel& operator=(const ErrorLevel&) = delete;

private:
    Configuration before_;
};

void removeWatched(const std::function<void()>& removal)
{
    bool failed = false;
    std::vector<std::string> evidence;
    // The sink comes first and goes last: a record must not go where no sink is.
    const auto sink = foundation::core::diag::attach_sink([&failed, &evidence](const log_record& record) {
        if (record.channel != removalChannel || record.severity < errorLevel) {
            return;
        }
        failed = true;
        if (std::string text = printedText(record.message); !text.empty()) {
            evidence.push_back(std::move(text));
        }
    });
    {
        const ErrorLevel level;
        removal();
    }
    if (failed) {
        throw Failure("REMOVAL_FAILED", "The distribution or image could not be removed.", evidence);
    }
}

} // namespace

void removeImage(const std::string& name)
{
    removeWatched([&name] { orb::lvm::clearDistroImage(name); });
}

void removeThroughGateway()
{
    removeWatched([] { callTeardown(); });
}

} // namespace kelpctl
