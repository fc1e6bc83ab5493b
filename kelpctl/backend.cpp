#include "backend.h"

#include "platform.h"

#include "host/exceptions.h"
#include "orb/lvm.h"

namespace kelpctl {
namespace {

constexpr char backendVariable[] = "USE_WSL";

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
        setEnvironmentVariable(backendVariable, *backend == Backend::wsl ? "1" : "0");
    }
}

bool usesWsl()
{
    return environmentVariable(backendVariable).value_or("1") == "1";
}

void requireClient()
{
    if (!usesWsl() && orb::lvm::getContainerExecutablePath().empty()) {
        throwDockerNotAvailable();
    }
}

} // namespace kelpctl
