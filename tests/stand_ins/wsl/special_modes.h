#pragma once

#include <optional>
#include <string_view>

namespace stand_in {

// The modes that replace a command altogether; nothing when none of them is on. The word is the command line's first.
std::optional<int> behaveSpecially(std::string_view word);

} // namespace stand_in
