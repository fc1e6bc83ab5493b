#include "wide_text.h"

#include "host/text.h"

#include <stdexcept>
#include <system_error>

namespace orb::process::detail {

std::wstring wide(std::string_view text)
{
    try {
        const std::u16string units = foundation::core::text::cvt_utf8_ustring(text);
        return {units.begin(), units.end()};
    } catch (const std::system_error&) {
        throw std::invalid_argument("not UTF-8: '" + std::string(text) + "'");
    }
}

std::string programName(std::string_view text)
{
    try {
        return foundation::core::text::cvt_ustring_utf8(foundation::core::text::cvt_string_ustring(text));
    } catch (const std::system_error&) {
        throw std::invalid_argument("neither UTF-8 nor in the console's code page: '" + std::string(text) + "'");
    }
}

std::string narrow(std::wstring_view text)
{
    return foundation::core::text::cvt_ustring_utf8(std::u16string(text.begin(), text.end()));
}

} // namespace orb::process::detail
