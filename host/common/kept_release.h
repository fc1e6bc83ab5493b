// Release texts that were given out.
#pragma once

#include <string>

namespace foundation::core::config {

// A copy of the text that stays valid until the process exits. Any thread.
const char* keepRelease(const std::string& release);

} // namespace foundation::core::config
