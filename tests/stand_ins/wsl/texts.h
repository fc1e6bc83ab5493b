#pragma once

#include <string_view>

namespace stand_in {

// The German text of an English one; the English text itself where there is none.
std::string_view german(std::string_view english);

std::string_view usageText();
std::string_view inboxUsageText();

} // namespace stand_in
