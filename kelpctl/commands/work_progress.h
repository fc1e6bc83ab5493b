// What is told of work while it goes on: the line on a terminal, objects for programs, and what a user must know at once.
#pragma once

#include "asking/watch.h"
#include "request/request.h"
#include "terminal/progress.h"

#include <chrono>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace kelpctl {

class WorkProgress {
public:
    // `awaited` says what the line tells, of work that is no program's; it is asked on the thread that looks.
    explicit WorkProgress(const Context& context, Eyes eyes = systemEyes(), std::function<std::string()> awaited = {});

    // To be called about once a second. Ends the run that has stalled when the request asks for it.
    ProgressView look(std::chrono::steady_clock::time_point now, std::chrono::seconds elapsed);

private:
    std::vector<std::string> noticesOf(const Watch::View& seen);

    const Context& context_;
    Watch watch_;
    std::function<std::string()> awaited_;
    bool showsLine_;
    // What has been said of the run that goes on.
    std::size_t run_ = 0;
    std::set<State> said_;
};

} // namespace kelpctl
