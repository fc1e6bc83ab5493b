// Work that takes a while.
#pragma once

#include "request/request.h"

#include <functional>
#include <string>

namespace kelpctl {

// Does `step` with a progress line, where there is a terminal for it, and ends it on Ctrl-C: Failure("INTERRUPTED") is
// thrown then. The library reports a failed registry pull on std::cout, where only results belong; it is shown on
// standard error when the progress line is gone. The line tells what `awaited` says, asked from another thread; the
// program that runs when that is empty.
void work(const Context& context, const std::function<void()>& step, const std::function<std::string()>& awaited = {});

} // namespace kelpctl
