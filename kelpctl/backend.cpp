#include "backend.h"

#include "platform.h"

#include "lvm/rules.h"

#include "host/exceptions.h"
#include "orb/lvm.h"

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

[[noreturn]] void throwDockerNotAvailable()
{
    using namespace orb::container_support;
    throw foundation::core::except::Exception<DOCKER_NOT_AVAILABLE, std::exception, void>(
        {catalogue, DOCKER_NOT_AVAILABLE::identifier, {}});
}

} // namespace

void selectBackend(const std::optional<Backend>& backend)
{
    if (backend) {
        setEnvironmentVariable(rules::backendVariable, *backend == Backend::wsl ? "1" : "0");
    }
}

bool usesWsl()
{
    const std::optional<std::string> value = environmentVariable(rules::backendVariable);
    return rules::selectsWsl(value ? value->c_str() : nullptr);
}

void requireClient()
{
    if (!usesWsl() && orb::lvm::getContainerExecutablePath().empty()) {
        throwDockerNotAvailable();
    }
}

} // namespace kelpctl
