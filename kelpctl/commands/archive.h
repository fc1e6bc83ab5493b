// The command that reads an archive, and the look that others take before they use one.
#pragma once

#include "failure/output.h"
#include "request/request.h"

namespace kelpctl {

Outcome archive(const Context& context);

// Takes a quick look into the archive that the environment would be created from. Throws Failure when the backend would
// fail on it for certain, unless the environment exists already, the registry may have the image, or "--force" was
// given. What cannot be found at all is the library's to tell.
void requireUsableArchive(const Context& context);

} // namespace kelpctl
