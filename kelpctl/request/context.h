// What a command works with.
#pragma once

#include "asking/journal.h"
#include "asking/programs.h"
#include "request/request.h"
#include "terminal/console.h"

namespace kelpctl {

struct Context {
    const Request& request;
    Console& console;
    const Programs& programs;
    RunJournal& journal;
};

} // namespace kelpctl
