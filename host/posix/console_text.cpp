#include "console_text.h"

#include <system_error>

namespace foundation::core::text {

std::u16string fromConsole(std::string_view /*text*/)
{
    throw std::system_error(std::make_error_code(std::errc::illegal_byte_sequence), "text is not well-formed UTF-8");
}

} // namespace foundation::core::text
