#include "host/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <system_error>

namespace {

using namespace foundation::core::text;
using namespace std::string_view_literals;

// "é漢字🙂" and the ends of each sequence length.
const std::u16string samples = u"a\u007f\u0080\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffffé漢字\U0001f642";

std::string utf16le(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

template <class Conversion>
void expectIllegal(Conversion conversion)
{
    try {
        conversion();
        FAIL() << "text that is not well-formed was accepted";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::illegal_byte_sequence);
    }
}

TEST(Text, EveryLengthOfSequenceSurvivesTheRoundTrip)
{
    EXPECT_EQ(cvt_utf8_ustring(cvt_ustring_utf8(samples)), samples);
    EXPECT_EQ(cvt_ustring_utf8(u"é漢\U0001f642"), "\xc3\xa9\xe6\xbc\xa2\xf0\x9f\x99\x82");
}

TEST(Text, LengthCountsCodeUnitsAndNulsAreText)
{
    const std::u16string text(u"a\0b", 3);
    EXPECT_EQ(cvt_ustring_utf8(text.data(), 2), std::string("a\0", 2));
    EXPECT_EQ(cvt_utf8_ustring(std::string_view("a\0b", 3)), text);
    EXPECT_EQ(cvt_ustring_utf8(nullptr, 0), "");
}

TEST(Text, UnpairedSurrogatesAreAnError)
{
    const char16_t high[] = {0xD83D};
    const char16_t low[] = {0xDE42, u'a'};
    const char16_t swapped[] = {0xDE42, 0xD83D};
    const char16_t highThenLetter[] = {0xD83D, u'a'};
    expectIllegal([&] { cvt_ustring_utf8(high, 1); });
    expectIllegal([&] { cvt_ustring_utf8(low, 2); });
    expectIllegal([&] { cvt_ustring_utf8(swapped, 2); });
    expectIllegal([&] { cvt_ustring_utf8(highThenLetter, 2); });
}

TEST(Text, MalformedUtf8IsAnError)
{
    for (const std::string_view bad : {
             "\x80"sv,             // a byte that cannot be first
             "\xc3"sv,             // truncated, two bytes
             "\xe6\xbc"sv,         // truncated, three bytes
             "\xf0\x9f\x99"sv,     // truncated, four bytes
             "\xc3\x28"sv,         // a byte that cannot follow
             "\xc0\xaf"sv,         // overlong, two bytes
             "\xe0\x80\xaf"sv,     // overlong, three bytes
             "\xf0\x80\x80\xaf"sv, // overlong, four bytes
             "\xed\xa0\x80"sv,     // a surrogate
             "\xf4\x90\x80\x80"sv, // above U+10FFFF
             "\xff"sv,
         }) {
        expectIllegal([&] { cvt_utf8_ustring(bad); });
    }
}

TEST(Text, TheNativeNarrowEncodingIsUtf8)
{
    EXPECT_EQ(cvt_ustring_string(u"distro é"), "distro \xc3\xa9");
    EXPECT_EQ(cvt_string_ustring("distro \xc3\xa9"), u"distro é");
    const char16_t high[] = {0xD83D};
    expectIllegal([&] { cvt_ustring_string({high, 1}); });
}

TEST(Text, ATextTooLongForAPathIsAnError)
{
    // Never read: the length alone decides.
    const std::string_view endless("", std::size_t{1} << 31);
    try {
        cvt_string_ustring(endless);
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::value_too_large);
    }
}

TEST(Readable, Utf8StaysAsItIs)
{
    EXPECT_EQ(readable(""), "");
    EXPECT_EQ(readable("é漢字\nsecond"), "é漢字\nsecond");
}

TEST(Readable, LineEndsBecomeASingleNewline)
{
    EXPECT_EQ(readable("a\r\nb\r\r\nc\rd"), "a\nb\nc\rd");
    EXPECT_EQ(readable(utf16le(u"a\r\nb\r\r\n")), "a\nb\n");
}

TEST(Readable, Utf16IsDecoded)
{
    EXPECT_EQ(readable(utf16le(u"There is no distribution. \r\nError code: Wsl/Service/X\r\n")),
              "There is no distribution. \nError code: Wsl/Service/X\n");
    EXPECT_EQ(readable(utf16le(u"没有分发\r\n")), "没有分发\n");
}

TEST(Readable, OneStreamMayMixBothEncodings)
{
    EXPECT_EQ(readable("cout = \n" + utf16le(u"Kein Zugriff é.\r\n") + "\ncerr = \nbsdtar: é\n\n"),
              "cout = \nKein Zugriff é.\n\ncerr = \nbsdtar: é\n\n");
}

TEST(Readable, ALabelMayStandInFrontOfUtf16)
{
    EXPECT_EQ(readable("unsuccessful cout = " + utf16le(u"There is none.\r\n")),
              "unsuccessful cout = There is none.\n");
    EXPECT_EQ(readable("a = b, cout = " + utf16le(u"没有分发\r\n")), "a = b, cout = 没有分发\n");
}

TEST(Readable, BytesThatAreNeitherBecomeReplacementCharacters)
{
    EXPECT_EQ(readable("gr\xfc\xdf\n"), "gr\uFFFD\uFFFD\n");
    EXPECT_EQ(readable(std::string("a\0b\0c", 5)), "ab\uFFFD");
    EXPECT_EQ(readable(std::string("\x3d\xd8\x0a\x00", 4)), "\uFFFD\n");
}

TEST(Readable, Utf16IsKnownByTheFirstZeroByteWhereverItIs)
{
    EXPECT_EQ(readable(utf16le(u"\u0A95\n")), "\u0A95\n") << "a letter with the byte of a newline";
    EXPECT_TRUE(readable(std::string("\xff\nab\0", 5)).starts_with("\uFFFD\n")) << "no UTF-16";
}

TEST(Readable, WhatFollowsALineOfUtf16IsReadByItself)
{
    EXPECT_EQ(readable(utf16le(u"a\n") + "x"), "a\nx");
    EXPECT_EQ(readable(utf16le(std::u16string(u"a\0b\n", 4))), "ab\n") << "a zero is dropped";
    EXPECT_EQ(readable("caf\u00E9 = \xff\n"), "caf\u00E9 = \uFFFD\n") << "a label is ASCII";
}

TEST(Readable, LongGarbageTakesNoLongTime)
{
    std::string garbage;
    while (garbage.size() < 4'000'000) {
        garbage += "\xe9t\xe9 line\n";
    }
    EXPECT_GT(readable(garbage).size(), garbage.size());
}

} // namespace
