#include "host/run_options.h"

#include <utility>

namespace orb::process::detail {

struct RunOptions::State {
    std::function<bool()> terminationHandler;
    bool terminatesTree = false;
    std::function<void(Stream, std::string_view)> outputLogger;
    std::function<std::string()> inputHandler;
    std::chrono::milliseconds streamTimeout{5000};
    std::function<void(std::uint32_t processId, void* userObject)> startCallback;
    std::function<void(const ExitReport&, void* userObject)> exitCallback;
    void* userObject = nullptr;
};

RunOptions::RunOptions() : state_(std::make_unique<State>()) {}

RunOptions::~RunOptions() = default;

RunOptions::RunOptions(const RunOptions& other) : state_(std::make_unique<State>(*other.state_)) {}

RunOptions& RunOptions::operator=(const RunOptions& other)
{
    if (this != &other) {
        *state_ = *other.state_;
    }
    return *this;
}

void RunOptions::setTerminationHandler(std::function<bool()> handler)
{
    state_->terminationHandler = std::move(handler);
}

const std::function<bool()>& RunOptions::terminationHandler() const noexcept
{
    return state_->terminationHandler;
}

void RunOptions::setTerminatesTree(bool whole) noexcept
{
    state_->terminatesTree = whole;
}

bool RunOptions::terminatesTree() const noexcept
{
    return state_->terminatesTree;
}

void RunOptions::setOutputLogger(std::function<void(Stream, std::string_view)> logger)
{
    state_->outputLogger = std::move(logger);
}

const std::function<void(Stream, std::string_view)>& RunOptions::outputLogger() const noexcept
{
    return state_->outputLogger;
}

void RunOptions::setInputHandler(std::function<std::string()> handler)
{
    state_->inputHandler = std::move(handler);
}

const std::function<std::string()>& RunOptions::inputHandler() const noexcept
{
    return state_->inputHandler;
}

void RunOptions::setStartCallback(std::function<void(std::uint32_t processId, void* userObject)> callback)
{
    state_->startCallback = std::move(callback);
}

const std::function<void(std::uint32_t processId, void* userObject)>& RunOptions::startCallback() const noexcept
{
    return state_->startCallback;
}

void RunOptions::setExitCallback(std::function<void(const ExitReport&, void* userObject)> callback)
{
    state_->exitCallback = std::move(callback);
}

const std::function<void(const ExitReport&, void* userObject)>& RunOptions::exitCallback() const noexcept
{
    return state_->exitCallback;
}

void RunOptions::setStreamTimeout(std::chrono::milliseconds timeout) noexcept
{
    state_->streamTimeout = timeout;
}

std::chrono::milliseconds RunOptions::streamTimeout() const noexcept
{
    return state_->streamTimeout;
}

void RunOptions::setUserObject(void* object) noexcept
{
    state_->userObject = object;
}

void* RunOptions::userObject() const noexcept
{
    return state_->userObject;
}

} // namespace orb::process::detail
