#include "host/configuration.h"

#include "channel_masks.h"

#include <mutex>
#include <utility>

namespace foundation::core::config {

struct Configuration::State {
    std::optional<std::string> installationRoot;
    std::optional<std::string> release;
    std::optional<std::string> temporaryFolder;
    std::map<std::string, std::uint32_t> channelMasks;
    std::string language;
};

Configuration::Configuration() : state_(std::make_unique<State>()) {}

Configuration::~Configuration() = default;

Configuration::Configuration(const Configuration& other) : state_(std::make_unique<State>(*other.state_)) {}

Configuration& Configuration::operator=(const Configuration& other)
{
    if (this != &other) {
        *state_ = *other.state_;
    }
    return *this;
}

void Configuration::setInstallationRoot(std::optional<std::string> root)
{
    state_->installationRoot = std::move(root);
}

const std::optional<std::string>& Configuration::installationRoot() const noexcept
{
    return state_->installationRoot;
}

void Configuration::setRelease(std::optional<std::string> release)
{
    state_->release = std::move(release);
}

const std::optional<std::string>& Configuration::release() const noexcept
{
    return state_->release;
}

void Configuration::setTemporaryFolder(std::optional<std::string> folder)
{
    state_->temporaryFolder = std::move(folder);
}

const std::optional<std::string>& Configuration::temporaryFolder() const noexcept
{
    return state_->temporaryFolder;
}

void Configuration::setChannelMasks(std::map<std::string, std::uint32_t> masks)
{
    state_->channelMasks = std::move(masks);
}

void Configuration::setChannelMask(const std::string& channel, std::uint32_t mask)
{
    state_->channelMasks[channel] = mask;
}

const std::map<std::string, std::uint32_t>& Configuration::channelMasks() const noexcept
{
    return state_->channelMasks;
}

void Configuration::setLanguage(std::string language)
{
    state_->language = std::move(language);
}

const std::string& Configuration::language() const noexcept
{
    return state_->language;
}

namespace {

struct Current {
    std::mutex mutex;
    Configuration configuration;
};

Current& current()
{
    static Current instance;
    return instance;
}

} // namespace

void configure(const Configuration& configuration)
{
    {
        const std::lock_guard lock(current().mutex);
        current().configuration = configuration;
    }
    diag::channelMasks()->configure(configuration.channelMasks());
}

Configuration configuration()
{
    const std::lock_guard lock(current().mutex);
    return current().configuration;
}

} // namespace foundation::core::config
