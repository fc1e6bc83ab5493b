// Reading what programs print.
#include "text.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace orb::lvm::detail;
using List = std::vector<std::string>;

TEST(Text, SixCharactersAreBlank)
{
    for (int code = 0; code < 256; ++code) {
        const bool expected =
            code == ' ' || code == '\t' || code == '\n' || code == '\v' || code == '\f' || code == '\r';
        EXPECT_EQ(isBlank(static_cast<char>(static_cast<unsigned char>(code))), expected) << code;
    }
}

TEST(Text, TrimRemovesBlanksAtBothEndsOnly)
{
    EXPECT_EQ(trim(" \t\r\n\v\fa b\r\n \t\v\f"), "a b");
    EXPECT_EQ(trim("a"), "a");
    EXPECT_EQ(trim(" a"), "a");
    EXPECT_EQ(trim("a "), "a");
    EXPECT_EQ(trim(" \r\n "), "");
    EXPECT_EQ(trim(" "), "");
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trim("\xC2\xA0x\xE3\x80\x80"), "\xC2\xA0x\xE3\x80\x80");
}

TEST(Text, LinesAreTrimmedAndEmptyOnesLeftOut)
{
    EXPECT_EQ(trimmedLines("one\r\n two words \r\n\r\n \t\nthree"), (List{"one", "two words", "three"}));
    EXPECT_EQ(trimmedLines("one"), List{"one"});
    EXPECT_EQ(trimmedLines("one\n"), List{"one"});
    EXPECT_EQ(trimmedLines("\none\n\n"), List{"one"});
    EXPECT_EQ(trimmedLines("a\nb"), (List{"a", "b"}));
    EXPECT_EQ(trimmedLines("a\rb\vc\n"), List{"a\rb\vc"});
    EXPECT_EQ(trimmedLines(""), List{});
    EXPECT_EQ(trimmedLines("\n"), List{});
    EXPECT_EQ(trimmedLines(" \r\n \n "), List{});
}

TEST(Text, WordsAreWhatBlanksSeparate)
{
    EXPECT_EQ(words("one two"), (List{"one", "two"}));
    EXPECT_EQ(words("  one\ttwo\r\nthree\vfour\ffive \n"), (List{"one", "two", "three", "four", "five"}));
    EXPECT_EQ(words("one"), List{"one"});
    EXPECT_EQ(words("b a b"), (List{"b", "a", "b"}));
    EXPECT_EQ(words("\"a b\""), (List{"\"a", "b\""}));
    EXPECT_EQ(words(""), List{});
    EXPECT_EQ(words(" \r\n\t"), List{});
    EXPECT_EQ(words("\xC3\xA4 \xE6\x97\xA5"), (List{"\xC3\xA4", "\xE6\x97\xA5"}));
}

TEST(Text, ContainsComparesWholeNamesExactly)
{
    EXPECT_TRUE(contains({"a", "name"}, "name"));
    EXPECT_TRUE(contains({"name", "a"}, "name"));
    EXPECT_FALSE(contains({"a", "Name", "names", "nam", " name"}, "name"));
    EXPECT_FALSE(contains({}, "name"));
    EXPECT_FALSE(contains({}, ""));
    EXPECT_TRUE(contains({""}, ""));
}

std::string streamed(const List& list)
{
    std::ostringstream stream;
    stream << Bracketed{list};
    return stream.str();
}

TEST(Text, BracketsEncloseEachElement)
{
    EXPECT_EQ(streamed({"C:\\wsl.exe", "--list", "-q"}), "[C:\\wsl.exe] [--list] [-q]");
    EXPECT_EQ(streamed({"one"}), "[one]");
    EXPECT_EQ(streamed({"", "a b", ""}), "[] [a b] []");
    EXPECT_EQ(streamed({}), "");
}

} // namespace
