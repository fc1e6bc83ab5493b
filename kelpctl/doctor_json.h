// The doctor's findings for programs; docs/use/kelpctl.schema.json describes them.
#pragma once

#include "verdict.h"

#include <nlohmann/json.hpp>

namespace kelpctl {

nlohmann::ordered_json doctorObject(const Examination& found, const Judgement& judgement, const Names& names);

} // namespace kelpctl
