// What a command works with.
#pragma once

#include "console.h"
#include "request.h"
#include "runs.h"

namespace kelpctl {

struct Context {
    const Request& request;
    Console& console;
    RunJournal& journal;
};

} // namespace kelpctl
