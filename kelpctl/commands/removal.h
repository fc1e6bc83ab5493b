// Removal whose failure is found out. The library only logs it.
#pragma once

#include "request/context.h"

namespace kelpctl {

// Removes the request's distribution or image, the default one for an empty name. Throws Failure when that failed, or
// when there is no such image.
void removeImage(const Context& context);

// The same through the host's gateway, for the default one.
void removeThroughGateway(const Context& context);

// Some Docker clients report success for a container that is not there. Throws Failure when there is none.
void requireContainer(const Context& context);

} // namespace kelpctl
