#include "commands/removal.h"

#include "asking/docker.h"
#include "asking/gateways.h"
#include "failure/failure.h"
#include "request/backend.h"
#include "request/names.h"

#include "orb/lvm.h"

namespace kelpctl {
namespace {

// The removal is the last program that the library runs.
void requireRemoved(const Context& context)
{
    const std::vector<Run> runs = context.journal.runs();
    if (!runs.empty() && !runs.back().succeeded()) {
        throw Failure("REMOVAL_FAILED");
    }
}

// Forced removal by Docker succeeds for what is not there as well.
void requireImage(const Context& context)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        return;
    case Backend::docker:
        break;
    }
    const std::string client = orb::lvm::getContainerExecutablePath();
    const std::string image = namesOf(context.request).image;
    if (!imageExists(context.programs, client, image) && askEngine(context.programs, client).reachable()) {
        throw Failure("REMOVAL_FAILED", {}, "NO_SUCH_IMAGE");
    }
}

} // namespace

void requireContainer(const Context& context)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        return;
    case Backend::docker:
        break;
    }
    const std::string client = orb::lvm::getContainerExecutablePath();
    if (askContainer(context.programs, client, namesOf(context.request).container) == ContainerState::missing) {
        throw Failure("CONTAINER_NOT_STOPPED", {}, "NO_SUCH_CONTAINER");
    }
}

void removeImage(const Context& context)
{
    requireImage(context);
    orb::lvm::clearDistroImage(context.request.name);
    requireRemoved(context);
}

void removeThroughGateway(const Context& context)
{
    requireImage(context);
    callTeardown();
    requireRemoved(context);
}

} // namespace kelpctl
