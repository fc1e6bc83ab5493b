// Text for the system.
#pragma once

#include <string>
#include <string_view>

namespace orb::process::detail {

// UTF-8 as the system takes it. Throws std::invalid_argument when it is not UTF-8.
std::wstring wide(std::string_view text);

// The name of a program as UTF-8, also when a look-up command printed it in the console's code page. Throws
// std::invalid_argument when it is neither.
std::string programName(std::string_view text);

// The system's text as UTF-8. Throws std::system_error when it is not well-formed.
std::string narrow(std::wstring_view text);

} // namespace orb::process::detail
