// Where the digits of a temporary name come from: from the system's source of random bits, and from nowhere else.
#include "random_names.h"

#include "host/files.h"
#include "host/install.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

std::vector<unsigned char> givenBytes;

bool takeGivenBytes(unsigned char* bytes, std::size_t size)
{
    if (givenBytes.size() < size) {
        return false;
    }
    const auto end = givenBytes.begin() + static_cast<std::ptrdiff_t>(size);
    std::copy(givenBytes.begin(), end, bytes);
    givenBytes.erase(givenBytes.begin(), end);
    return true;
}

// Names are made by the service; its other paths are not asked for here.
foundation::core::path::Pathname foundation::core::path::concatenate_pathname(const Pathname& base,
                                                                              std::u16string_view component, int form)
{
    return {base.text + u"/" + std::u16string(component), form};
}

namespace {

using foundation::core::path::tmpnam;

std::u16string digitsOf(const std::vector<unsigned char>& bytes)
{
    std::u16string text;
    for (const unsigned char byte : bytes) {
        text += u"0123456789abcdef"[byte / 16];
        text += u"0123456789abcdef"[byte % 16];
    }
    return text;
}

TEST(RandomNames, AreTheBytesThatTheSystemGives)
{
    for (unsigned first = 0; first < 256; ++first) {
        std::vector<unsigned char> bytes;
        for (unsigned place = 0; place < 16; ++place) {
            bytes.push_back(static_cast<unsigned char>(first + place * 37));
        }
        givenBytes = bytes;
        EXPECT_EQ(tmpnam(u"folder", u"before-", u".after"), u"folder/before-" + digitsOf(bytes) + u".after");
        EXPECT_TRUE(givenBytes.empty()) << "each name takes 16 bytes";
    }
}

TEST(RandomNames, AreNotMadeWithoutTheSystemsBytes)
{
    givenBytes.clear();
    EXPECT_THROW(tmpnam(u"folder", {}, {}), std::system_error);
}

} // namespace
