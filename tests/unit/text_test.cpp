// Reading what programs print.
#include "text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <locale>
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

// Marks every byte above 0x7F as white space, as a locale of the host's may mark some.
class WideBlanks : public std::ctype<char> {
public:
    WideBlanks() : std::ctype<char>(table().data()) {}

private:
    static std::array<mask, table_size>& table()
    {
        static std::array<mask, table_size> marks = [] {
            std::array<mask, table_size> all{};
            std::copy_n(classic_table(), table_size, all.begin());
            std::fill(all.begin() + 0x80, all.end(), space);
            return all;
        }();
        return marks;
    }
};

// Parts of letters in UTF-8: the C++ locale takes them for blanks, and Windows' C locale of code page 1252 the last.
TEST(Text, BlanksDoNotDependOnTheLocale)
{
    std::setlocale(LC_ALL, ".1252");
    std::locale::global(std::locale(std::locale::classic(), new WideBlanks));
    const std::string letters = "\x85\xA0";
    for (const char letter : letters) {
        EXPECT_FALSE(isBlank(letter));
    }
    EXPECT_EQ(trim(" " + letters + " "), letters);
    EXPECT_EQ(trimmedLines("a\n" + letters), (List{"a", letters}));
    EXPECT_EQ(words("a" + letters + " b"), (List{"a" + letters, "b"}));
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
