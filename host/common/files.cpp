#include "host/files.h"

#include "host/install.h"

#include "random_bits.h"

#include <array>

namespace foundation::core::path {
namespace {

std::u16string hexadecimal(const RandomBits& bits)
{
    constexpr char16_t digits[] = u"0123456789abcdef";
    std::u16string text;
    for (const unsigned char byte : bits) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace

std::u16string tmpnam(const std::u16string& directory, const std::u16string& prefix, const std::u16string& suffix)
{
    const std::u16string name = prefix + hexadecimal(randomBits()) + suffix;
    return concatenate_pathname({directory, native_form}, name, native_form).text;
}

} // namespace foundation::core::path
