// Text conversion: strict, its own inverse, of one mind with the C library's converter; and what is made readable is
// text.
#include "fuzz.h"

#include "host/text.h"

#include <cstring>
#include <system_error>

namespace {

using namespace foundation::core::text;

void fromUtf8(std::string_view text)
{
    bool taken = true;
    try {
        const std::u16string units = cvt_utf8_ustring(text);
        fuzz::require(cvt_ustring_utf8(units) == text, "UTF-8 comes back");
        fuzz::require(cvt_string_ustring(text) == units, "the native encoding is UTF-8");
    } catch (const std::system_error& error) {
        fuzz::require(error.code() == std::errc::illegal_byte_sequence, "the error says what it is");
        taken = false;
    }
    fuzz::require(taken == fuzz::isUtf8(text), "UTF-8 is what the C library takes for UTF-8");
}

void fromUtf16(std::string_view text)
{
    std::u16string units(text.size() / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), text.data(), units.size() * sizeof(char16_t));
    try {
        const std::string narrow = cvt_ustring_string(units);
        fuzz::require(fuzz::isUtf8(narrow), "what comes out is UTF-8");
        fuzz::require(cvt_utf8_ustring(narrow) == units, "UTF-16 comes back");
    } catch (const std::system_error& error) {
        fuzz::require(error.code() == std::errc::illegal_byte_sequence, "the error says what it is");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    fromUtf8(text);
    fromUtf16(text);
    const std::string shown = readable(text);
    fuzz::require(fuzz::isUtf8(shown), "what is made readable is UTF-8");
    return 0;
}
