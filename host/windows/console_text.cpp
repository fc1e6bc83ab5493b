#include "console_text.h"

#include <system_error>

#include <windows.h>

namespace foundation::core::text {

namespace {

// The machine's. CP_OEMCP is this process's, which is UTF-8 where its manifest asks for that; the programs that it runs
// know nothing of it.
UINT consoleCodePage()
{
    DWORD page = 0;
    const int length = GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTCODEPAGE | LOCALE_RETURN_NUMBER,
                                      reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
    return length > 0 ? page : CP_OEMCP;
}

} // namespace

std::u16string fromConsole(std::string_view text)
{
    const UINT page = consoleCodePage();
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    std::wstring units(static_cast<std::size_t>(size), L'\0');
    if (MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), length, units.data(), size) == 0) {
        throw std::system_error(std::make_error_code(std::errc::illegal_byte_sequence),
                                "text is neither UTF-8 nor in the code page of consoles");
    }
    return {units.begin(), units.end()};
}

} // namespace foundation::core::text
