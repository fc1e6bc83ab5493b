#include "console_text.h"

#include <system_error>

#include <windows.h>

namespace foundation::core::text {

std::u16string fromConsole(std::string_view text)
{
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_OEMCP, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    std::wstring units(static_cast<std::size_t>(size), L'\0');
    if (MultiByteToWideChar(CP_OEMCP, MB_ERR_INVALID_CHARS, text.data(), length, units.data(), size) == 0) {
        throw std::system_error(std::make_error_code(std::errc::illegal_byte_sequence),
                                "text is neither UTF-8 nor in the code page of consoles");
    }
    return {units.begin(), units.end()};
}

} // namespace foundation::core::text
