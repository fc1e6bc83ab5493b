#include "run_session.h"

#include <algorithm>

namespace orb::process::detail {

void RunSession::commit(Stream stream, std::size_t size)
{
    const std::string_view piece = capture(stream).commit(size);
    // While the program runs there is no deadline, and the clock need not be read for each piece.
    if (exited_) {
        extendStreamDeadline();
    }
    if (options_.outputLogger()) {
        options_.outputLogger()(stream, piece);
    }
}

bool RunSession::shouldTerminate()
{
    if (!polls() || now_() < nextPoll_) {
        return false;
    }
    nextPoll_ = now_() + pollInterval;
    if (feeder_ && feeder_->failed()) {
        return true;
    }
    terminated_ = options_.terminationHandler() && options_.terminationHandler()();
    if (terminated_ && exited_) {
        extendStreamDeadline();
    }
    return terminated_;
}

void RunSession::programExited()
{
    exited_ = true;
    extendStreamDeadline();
}

void RunSession::extendStreamDeadline()
{
    // A limit too long to be added to the clock is no limit.
    const Clock::time_point now = now_();
    const auto limit =
        terminated_ ? std::min(options_.streamTimeout(), terminatedStreamTimeout) : options_.streamTimeout();
    const bool endless = limit >= std::chrono::floor<std::chrono::milliseconds>(Clock::time_point::max() - now);
    streamDeadline_ = endless ? Clock::time_point::max() : now + limit;
}

std::optional<std::chrono::milliseconds> RunSession::timeout() const
{
    Clock::time_point next = exited_ ? streamDeadline_ : Clock::time_point::max();
    if (polls()) {
        next = std::min(next, nextPoll_);
    }
    if (next == Clock::time_point::max()) {
        return std::nullopt;
    }
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(next - now_());
    // The systems count the milliseconds of a wait in 32 bits at most.
    return std::clamp<std::chrono::milliseconds>(remaining, std::chrono::milliseconds{0}, std::chrono::hours{24});
}

RunResult RunSession::finish(ExitReport report)
{
    if (feeder_) {
        feeder_->finish();
    }
    RunResult result;
    result.status = report.status;
    result.standardOutput = output_.take();
    result.standardError = error_.take();
    report.terminated = terminated_;
    if (options_.exitCallback()) {
        options_.exitCallback()(report, options_.userObject());
    }
    return result;
}

} // namespace orb::process::detail
