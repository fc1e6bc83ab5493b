// The only source that knows Boost.Log.
#include "host/diagnostics.h"

#include "channel_masks.h"

#include <boost/log/attributes/clock.hpp>
#include <boost/log/attributes/current_thread_id.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_channel_logger.hpp>
#include <boost/make_shared.hpp>

#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

namespace foundation::core::diag {

namespace logging = boost::log;

namespace {

class CallbackBackend : public logging::sinks::basic_sink_backend<logging::sinks::synchronized_feeding> {
public:
    explicit CallbackBackend(std::function<void(const log_record&)> sink) : sink_(std::move(sink)) {}

    void consume(const logging::record_view& view)
    {
        log_record result;
        result.time = std::chrono::system_clock::now();
        result.channel = logging::extract_or_default<std::string>("Channel", view, std::string());
        result.severity = static_cast<std::uint32_t>(logging::extract_or_default<int>("Severity", view, 0));
        result.thread = threadName();
        result.message = logging::extract_or_default<std::string>("Message", view, std::string());
        sink_(result);
    }

private:
    // The sink is fed on the thread that logged.
    static std::string threadName()
    {
        std::ostringstream text;
        text.imbue(std::locale::classic());
        text << logging::aux::this_thread::get_id();
        return text.str();
    }

    std::function<void(const log_record&)> sink_;
};

using CallbackSink = logging::sinks::synchronous_sink<CallbackBackend>;

} // namespace

struct basic_diagnostic_logger::Source {
    explicit Source(const char* channel) : logger(logging::keywords::channel = std::string(channel)) {}

    logging::sources::severity_channel_logger_mt<int, std::string> logger;
    std::shared_ptr<ChannelMasks> masks = channelMasks();
};

basic_diagnostic_logger::basic_diagnostic_logger(const char* channel)
    : source_(std::make_unique<Source>(channel)), mask_(source_->masks->word(channel, {}))
{
}

basic_diagnostic_logger::basic_diagnostic_logger(const char* channel, const char* parent)
    : source_(std::make_unique<Source>(channel)), mask_(source_->masks->word(channel, parent))
{
}

basic_diagnostic_logger::~basic_diagnostic_logger() = default;

struct record::State {
    State(logging::sources::severity_channel_logger_mt<int, std::string>& source, int severity)
        : logger(source), opened(source.open_record(logging::keywords::severity = severity))
    {
        if (opened) {
            stream.emplace(opened);
            stream->imbue(std::locale::classic());
            // Boost.Log writes flags as words otherwise.
            stream->stream().unsetf(std::ios_base::boolalpha);
        }
    }

    logging::sources::severity_channel_logger_mt<int, std::string>& logger;
    logging::record opened;
    std::optional<logging::record_ostream> stream;
};

record::record(basic_diagnostic_logger& logger, std::uint32_t severity)
    : state_(std::make_unique<State>(logger.source_->logger, static_cast<int>(severity)))
{
}

record::~record() = default;

record::operator bool() const noexcept
{
    return state_->stream.has_value();
}

std::ostream& record::stream()
{
    return state_->stream->stream();
}

void record::push()
{
    state_->stream->flush();
    state_->stream.reset();
    state_->logger.push_record(std::move(state_->opened));
}

struct sink_handle::State {
    explicit State(std::function<void(const log_record&)> callback)
        : sink(boost::make_shared<CallbackSink>(boost::make_shared<CallbackBackend>(std::move(callback))))
    {
        logging::core::get()->add_sink(sink);
    }
    ~State() { logging::core::get()->remove_sink(sink); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    boost::shared_ptr<CallbackSink> sink;
};

sink_handle::sink_handle(std::unique_ptr<State> state) : state_(std::move(state)) {}
sink_handle::sink_handle(sink_handle&&) noexcept = default;
sink_handle& sink_handle::operator=(sink_handle&&) noexcept = default;
sink_handle::~sink_handle() = default;

sink_handle attach_sink(std::function<void(const log_record&)> sink)
{
    return sink_handle(std::make_unique<sink_handle::State>(std::move(sink)));
}

} // namespace foundation::core::diag
