// The doctor's findings for programs; docs/use/kelpctl.schema.json describes them.
#pragma once

#include "doctor/verdict.h"

#include <boost/json/fwd.hpp>

namespace kelpctl {

boost::json::object doctorObject(const Examination& found, const Judgement& judgement, const Names& names);

} // namespace kelpctl
