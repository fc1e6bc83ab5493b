// Processes that end together.
#pragma once

#include "handle.h"

namespace orb::process::detail {

// An empty job. What its processes start is in it too, unless it is started to break away, which they may do. When the
// handle is closed they go on. Throws std::system_error.
foundation::core::system::Handle makeJob();

} // namespace orb::process::detail
