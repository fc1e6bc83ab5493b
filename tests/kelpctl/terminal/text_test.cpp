#include "terminal/text.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::displayLines;
using kelpctl::escaped;
using kelpctl::redacted;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Text, ControlCharactersAreWrittenOut)
{
    EXPECT_EQ(escaped("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(escaped(std::string("\0\x1b\x1f\x7f", 4)), "\\x00\\x1B\\x1F\\x7F");
}

TEST(Text, HighControlCharactersAreWrittenOut)
{
    EXPECT_EQ(escaped("a\xC2\x9B[2J"), "a\\xC2\\x9B[2J");
    EXPECT_EQ(escaped("\xC2\xA0\xC3\x9B\xC2"), "\xC2\xA0\xC3\x9B\xC2");
}

TEST(Text, OtherCharactersStay)
{
    EXPECT_EQ(escaped("C:\\Grüße \xF0\x9F\x98\x80 ~"), "C:\\Grüße \xF0\x9F\x98\x80 ~");
    EXPECT_EQ(escaped(""), "");
}

TEST(Text, LinesForDisplayEndInNothing)
{
    EXPECT_THAT(displayLines("one\r\ntwo\r\r\n\n three\n\n"), ElementsAre("one", "two", "", " three"));
    EXPECT_THAT(displayLines("\x1b[2J"), ElementsAre("\\x1B[2J"));
    EXPECT_THAT(displayLines("\n\n"), IsEmpty());
    EXPECT_THAT(displayLines(""), IsEmpty());
}

TEST(Text, SecretsAreTakenOut)
{
    EXPECT_EQ(redacted("x=pass;y=pass", {"pass"}), "x=***;y=***");
    EXPECT_EQ(redacted("nothing here", {"pass"}), "nothing here");
    EXPECT_EQ(redacted("text", {""}), "text");
    EXPECT_EQ(redacted("text", {}), "text");
}

TEST(Text, LongestSecretIsTakenOutWhole)
{
    EXPECT_EQ(redacted("password", {"pass", "password"}), "***");
    EXPECT_EQ(redacted("password", {"password", "pass"}), "***");
}

TEST(Text, RedactionIsNoFurtherSecret)
{
    EXPECT_EQ(redacted("ab", {"a", "b", "*"}), "******");
}

TEST(Sizes, AreRoundedAndExact)
{
    EXPECT_EQ(kelpctl::sizeText(0), "0 bytes");
    EXPECT_EQ(kelpctl::sizeText(1), "1 byte");
    EXPECT_EQ(kelpctl::sizeText(1023), "1023 bytes");
    EXPECT_EQ(kelpctl::sizeText(1024), "1.0 KiB (1024 bytes)");
    EXPECT_EQ(kelpctl::sizeText(1572864), "1.5 MiB (1572864 bytes)");
    EXPECT_EQ(kelpctl::sizeText(5368709120), "5.0 GiB (5368709120 bytes)");
}

TEST(Text, ShortSizesAreRounded)
{
    EXPECT_EQ(kelpctl::shortSizeText(1023), "1023 bytes");
    EXPECT_EQ(kelpctl::shortSizeText(1572864), "1.5 MiB");
    EXPECT_EQ(kelpctl::shortSizeText(~0ULL), "16777216.0 TiB");
}

} // namespace
