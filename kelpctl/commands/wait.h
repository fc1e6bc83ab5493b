// A backend that is just starting.
#pragma once

#include "request/request.h"

namespace kelpctl {

// Asks the backend until it answers, for as long as "--wait" says; nothing when that is not given. A question that is not
// answered is ended. What goes on behind it may still find no backend, and tells why. Ends early when the user
// interrupts kelpctl.
void waitForBackend(const Context& context);

} // namespace kelpctl
