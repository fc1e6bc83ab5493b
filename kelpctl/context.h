// What a command works with.
#pragma once

#include "console.h"
#include "journal.h"
#include "programs.h"
#include "request.h"

namespace kelpctl {

struct Context {
    const Request& request;
    Console& console;
    const Programs& programs;
    RunJournal& journal;
};

} // namespace kelpctl
