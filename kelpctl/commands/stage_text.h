// A stage of long work, as people and as programs are told of it.
#pragma once

#include "asking/stage.h"

#include <boost/json/value.hpp>

#include <string>

namespace kelpctl {

// For the progress line; empty when nothing can be seen of the work.
std::string stageText(const Stage& stage);

// For programs: {"progress": {...}}. `command` is what runs, shortened; empty when nothing does.
boost::json::value stageObject(const Stage& stage, const std::string& command);

// For lines of few columns: "9 KiB", "412 MiB", "1.1 GiB", rounded down.
std::string shortSize(std::uint64_t bytes);

// "2 min", "40 s": rounded up to what is known of it.
std::string roughTime(std::chrono::seconds time);

} // namespace kelpctl
