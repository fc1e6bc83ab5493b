// The environment service: the variables of this process.
#pragma once

#include "host/export.h"

#include <optional>
#include <string>

namespace foundation::core::env {

// The variable that std::getenv() finds under this ASCII name, as UTF-8; nothing when it is not set. On Windows
// std::getenv() itself gives text in the ANSI code page, which has not all letters.
// Any thread, while none changes the environment. Throws std::system_error (errc::illegal_byte_sequence) on Windows for
// text that is not well-formed.
KORVANE_HOST_API std::optional<std::string> variable(const std::string& name);

} // namespace foundation::core::env
