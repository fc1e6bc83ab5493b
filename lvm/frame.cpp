#include "frame.h"

#include "rules.h"

#include "host/install.h"

#include <atomic>
#include <cstdlib>

namespace orb::lvm {
namespace detail {
namespace {

// A channel whose mask has none of these bits writes through the parent's logger.
constexpr std::uint32_t channelBits = 1 | 4 | 8 | 256 | 512;

constexpr char parentChannel[] = "orb:lvm";

// Both loggers of a channel.
class Channel {
public:
    explicit Channel(const char* name) : own_(name, parentChannel), parent_(parentChannel) {}

    basic_diagnostic_logger& logger() { return (own_.mask() & channelBits) != 0 ? own_ : parent_; }

private:
    basic_diagnostic_logger own_;
    basic_diagnostic_logger parent_;
};

} // namespace

bool useWsl()
{
    // What the text said is kept, not the text: it is the runtime library's, and a later change may overwrite it.
    // Atomic so that first calls from several threads, which all store the same value, are no data race.
    enum class Backend { unknown, wsl, docker };
    static std::atomic<Backend> cached{Backend::unknown};
    Backend backend = cached.load(std::memory_order_relaxed);
    if (backend == Backend::unknown) {
        const char* const value = std::getenv(backendVariable);
        if (value == nullptr) {
            return true;
        }
        backend = selectsWsl(value) ? Backend::wsl : Backend::docker;
        cached.store(backend, std::memory_order_relaxed);
    }
    return backend == Backend::wsl;
}

bool useDockerRepository()
{
    return isOne(std::getenv(registryVariable));
}

bool additionalLoggingEnabled()
{
    return isOne(std::getenv("KELP_ADDITIONAL_LOGGING"));
}

basic_diagnostic_logger& commonLogger()
{
    static Channel channel("orb:lvm:common");
    return channel.logger();
}

basic_diagnostic_logger& dockerLogger()
{
    static Channel channel("orb:lvm:docker");
    return channel.logger();
}

basic_diagnostic_logger& wslLogger()
{
    static Channel channel("orb:lvm:wsl");
    return channel.logger();
}

std::string hubTag()
{
    // The doubled stem is the name under which the image is published; it must stay exactly so.
    static const std::string tag = hubName + addKVRelease(hubName);
    return tag;
}

} // namespace detail

namespace {

using foundation::core::path::Pathname;

std::u16string findContainerTarsDirectory()
{
    using foundation::core::path::native_form;
    const Pathname root = foundation::core::path::get_install_path();
    Pathname directory = root.empty() ? Pathname{} : foundation::core::path::make_native_form(root, native_form);
    for (const char16_t* component : {u"toolbox", u"shared", u"kavori", u"kelp", u"tar_files"}) {
        directory = foundation::core::path::concatenate_pathname(directory, component, native_form);
    }
    return directory.text;
}

} // namespace

std::string addKVRelease(const std::string& name)
{
    // Asked once, a missing release included: names must not change while the process runs.
    static const char* const release = svKorvaneRelease();
    return release == nullptr ? name : name + "_" + release;
}

const std::u16string& getContainerTarsDirectory()
{
    static const std::u16string directory = findContainerTarsDirectory();
    return directory;
}

} // namespace orb::lvm
