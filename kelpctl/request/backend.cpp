#include "request/backend.h"

#include "terminal/platform.h"

#include "host/environment.h"
#include "host/exceptions.h"
#include "orb/lvm.h"

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

constexpr BackendTraits wslTraits = {"wsl", "WSL", "--wsl", "1", "distribution", rules::distroArchives, false};
constexpr BackendTraits dockerTraits = {"docker", "Docker", "--docker", "0", "image", rules::imageArchives, true};

[[noreturn]] void throwDockerNotAvailable()
{
    using namespace orb::container_support;
    throw foundation::core::except::Exception<DOCKER_NOT_AVAILABLE, std::exception, void>(
        {catalogue, DOCKER_NOT_AVAILABLE::identifier, {}});
}

} // namespace

const BackendTraits& traitsOf(Backend backend)
{
    switch (backend) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return dockerTraits;
    }
    return wslTraits;
}

void selectBackend(const std::optional<Backend>& backend)
{
    if (backend) {
        setEnvironmentVariable(rules::backendVariable, traitsOf(*backend).value);
    }
}

Backend selectedBackend()
{
    const std::optional<std::string> value = foundation::core::env::variable(rules::backendVariable);
    return rules::selectsWsl(value ? value->c_str() : nullptr) ? Backend::wsl : Backend::docker;
}

void requireClient()
{
    switch (selectedBackend()) {
    case Backend::wsl:
        return;
    case Backend::docker:
        if (orb::lvm::getContainerExecutablePath().empty()) {
            throwDockerNotAvailable();
        }
        return;
    }
}

} // namespace kelpctl
