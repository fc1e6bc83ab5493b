// The host's diagnostic channels, exceptions, messages and arrays, as the fake host answers them.
#include "fake_frame.h"
#include "fake_host.h"

#include "host/diagnostics.h"
#include "host/exceptions.h"

#include <sstream>
#include <stdexcept>

using fake::host;

namespace foundation::core {
namespace diag {

struct basic_diagnostic_logger::Source {
    std::string channel;
    // How the host's lists of loggers call it.
    std::string name = channel;
};

basic_diagnostic_logger::basic_diagnostic_logger(const char* channel)
    : source_(std::make_unique<Source>(Source{channel})), mask_(&host().mask(channel))
{
    const std::lock_guard lock(host().mutex);
    host().loggers.emplace_back(channel);
}

basic_diagnostic_logger::basic_diagnostic_logger(const char* channel, const char* parent)
    : source_(std::make_unique<Source>(Source{channel, std::string(channel) + " < " + parent})),
      mask_(&host().mask(channel))
{
    const std::lock_guard lock(host().mutex);
    host().loggers.push_back(source_->name);
}

basic_diagnostic_logger::~basic_diagnostic_logger()
{
    const std::lock_guard lock(host().mutex);
    host().destroyedLoggers.push_back(source_->name);
}

struct record::State {
    std::string start;
    std::ostringstream text;
};

record::record(basic_diagnostic_logger& logger, std::uint32_t severity)
{
    const std::lock_guard lock(host().mutex);
    ++host().openedRecords;
    if (host().acceptsRecords) {
        state_ = std::make_unique<State>();
        state_->start = "log " + logger.source_->channel + " " + std::to_string(severity) + ": ";
    }
}

record::~record() = default;

record::operator bool() const noexcept
{
    return state_ != nullptr;
}

std::ostream& record::stream()
{
    const std::lock_guard lock(host().mutex);
    ++host().streamedRecords;
    return state_->text;
}

void record::push()
{
    host().record(state_->start + state_->text.str());
    state_.reset();
}

} // namespace diag

namespace except {

IException::~IException() = default;
IUserException::~IUserException() = default;
IMsgIDException::~IMsgIDException() = default;

std::string describe(const message::Message& message)
{
    return message.catalogue + ":" + message.identifier;
}

} // namespace except

std::string message::localisedText(const Message& message)
{
    return "text of " + message.identifier;
}

} // namespace foundation::core

hxClass hxGetClass(const hxArray* array)
{
    return array->elementClass;
}

bool hxIsChar(const hxArray* array)
{
    host().record("hxIsChar " + array->name);
    return array->elementClass == hxClass::character;
}

std::u16string get_ustring(const hxArray* array)
{
    host().record("get_ustring " + array->name);
    if (array->elementClass != hxClass::character) {
        throw std::invalid_argument("not a character array");
    }
    return array->text;
}

hxArray* hxCreateDoubleScalar(double value)
{
    return new hxArray{"new", hxClass::floating, {}, value};
}

void hxDestroyArray(hxArray* array) noexcept
{
    delete array;
}

void hxArrayDeleter::operator()(hxArray* array) const noexcept
{
    hxDestroyArray(array);
}
