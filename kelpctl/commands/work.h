// Work that takes a while.
#pragma once

#include "request/request.h"

#include <functional>
#include <string>

namespace kelpctl {

// Does `step` and tells of it meanwhile, as work_progress.h says. Ends it on Ctrl-C, and when it has stalled where the
// request wants that: Failure("INTERRUPTED"), or Failure("WORK_STALLED"), is thrown then. The library reports a failed
// registry pull on std::cout, where only results belong; it is shown on standard error when the progress line is gone.
// The line tells what `awaited` says, asked from another thread; the program that runs when that is empty.
void work(const Context& context, const std::function<void()>& step, const std::function<std::string()>& awaited = {});

} // namespace kelpctl
