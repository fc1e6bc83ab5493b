// Text of programs that know nothing of UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace foundation::core::text {

// Text in the code page of consoles. Throws std::system_error (errc::illegal_byte_sequence) for text that is not
// well-formed there, and on systems whose consoles have UTF-8 always.
std::u16string fromConsole(std::string_view text);

} // namespace foundation::core::text
