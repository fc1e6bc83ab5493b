#include "archive/sha256.h"

#include "archive/checksum.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using kelpctl::Sha256;
using kelpctl::sumFor;

std::string sumOf(const std::string& text, std::size_t step)
{
    Sha256 sum;
    for (std::size_t start = 0; start < text.size(); start += step) {
        sum.add(std::string_view(text).substr(start, step));
    }
    return sum.finish();
}

// The examples of FIPS 180-4.
TEST(Sha256, IsThatOfTheStandard)
{
    EXPECT_EQ(sumOf("", 1), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sumOf("abc", 3), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sumOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", 100),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(sumOf(std::string(1000000, 'a'), 4096),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, IsTheSameHoweverItIsCut)
{
    const std::string text(1000, 'x');
    for (const std::size_t step : {1U, 63U, 64U, 65U, 999U}) {
        EXPECT_EQ(sumOf(text, step), sumOf(text, 1000)) << step;
    }
}

const std::string one(64, '1');
const std::string two(64, '2');

TEST(SumFor, TakesTheLineOfTheFile)
{
    EXPECT_EQ(sumFor("b.tar", one + "  a.tar\n" + two + " *b.tar\r\n"), two);
    EXPECT_EQ(sumFor("b.tar", one + "  out/a.tar\n" + two + "  out/b.tar\n"), two);
    EXPECT_EQ(sumFor("c.tar", one + "  a.tar\n" + two + "  b.tar\n"), "");
}

TEST(SumFor, TakesTheOnlyOneWhateverItsNameIs)
{
    EXPECT_EQ(sumFor("a.tar", one), one);
    EXPECT_EQ(sumFor("a.tar", one + "  renamed.tar\n"), one);
    EXPECT_EQ(sumFor("a.tar", std::string(64, 'A') + "\n"), std::string(64, 'a'));
}

TEST(SumFor, TakesNothingElse)
{
    for (const std::string& text : {std::string(), std::string("no sum"), std::string(63, '1'), std::string(64, 'g')}) {
        EXPECT_EQ(sumFor("a.tar", text), "") << text;
    }
}

} // namespace
