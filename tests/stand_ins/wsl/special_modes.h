#pragma once

#include <optional>
#include <string_view>

namespace stand_in {

// The modes that replace a command altogether; nothing when none of them is on. The word is the command line's first,
// the rest what follows it. Throws a Failure in the modes that are one.
std::optional<int> behaveSpecially(std::string_view word, std::string_view rest);

// Fails in the modes in which no virtual machine can be made for what `context` names ("RegisterDistro").
void requireVirtualMachine(std::string_view context);

} // namespace stand_in
