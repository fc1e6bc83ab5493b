#include "input_feeder.h"

namespace orb::process::detail {

InputFeeder::InputFeeder(const std::function<std::string()>& handler, std::unique_ptr<InputSink> sink)
    : sink_(std::move(sink)), thread_([this, &handler] { feed(handler); })
{
}

InputFeeder::~InputFeeder()
{
    stopped_ = true;
    sink_->interrupt();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void InputFeeder::finish()
{
    stopped_ = true;
    sink_->interrupt();
    thread_.join();
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

void InputFeeder::feed(const std::function<std::string()>& handler)
{
    try {
        for (std::string piece = handler(); !stopped_ && !piece.empty(); piece = handler()) {
            if (!sink_->write(piece)) {
                break;
            }
        }
    } catch (...) {
        failure_ = std::current_exception();
        failed_ = true;
    }
    sink_->close();
}

} // namespace orb::process::detail
