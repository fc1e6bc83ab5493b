#include "removal.h"

#include "errors.h"
#include "gateways.h"

#include "orb/lvm.h"

namespace kelpctl {
namespace {

// The removal is the last program that the library runs.
void requireRemoved(const Context& context)
{
    const std::vector<Run> runs = context.journal.runs();
    if (!runs.empty() && runs.back().failed()) {
        throw Failure("REMOVAL_FAILED");
    }
}

} // namespace

void removeImage(const Context& context)
{
    orb::lvm::clearDistroImage(context.request.name);
    requireRemoved(context);
}

void removeThroughGateway(const Context& context)
{
    callTeardown();
    requireRemoved(context);
}

} // namespace kelpctl
