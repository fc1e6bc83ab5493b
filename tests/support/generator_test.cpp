// A rule is tested only as far as the values go.
#include "generator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

constexpr int draws = 6'000;

TEST(GeneratedValues, AreTheSameForTheSameSeedAndOthersForAnother)
{
    Generator first(1);
    Generator again(1);
    Generator other(2);
    bool differs = false;
    for (int draw = 0; draw < 100; ++draw) {
        const std::string text = first.output();
        EXPECT_EQ(text, again.output());
        differs = differs || text != other.output();
    }
    EXPECT_TRUE(differs);
}

TEST(GeneratedValues, TextsAreOfAllKinds)
{
    Generator any(3);
    int empty = 0;
    int huge = 0;
    int blank = 0;
    std::set<char> characters;
    for (int draw = 0; draw < draws; ++draw) {
        const std::string text = any.text();
        empty += text.empty() ? 1 : 0;
        huge += text.size() > 70'000 ? 1 : 0;
        blank += std::any_of(text.begin(), text.end(), isOneOfSixBlanks) ? 1 : 0;
        characters.insert(text.begin(), text.size() < 100 ? text.end() : text.begin() + 100);
    }
    EXPECT_GT(empty, draws / 20);
    EXPECT_GT(huge, 0);
    EXPECT_GT(blank, draws / 4);
    EXPECT_GT(characters.size(), 90U);
    EXPECT_EQ(characters.count('\0'), 0U);
}

TEST(GeneratedValues, OutputsHaveAllBytes)
{
    Generator any(4);
    std::set<char> bytes;
    for (int draw = 0; draw < 3000; ++draw) {
        const std::string output = any.output();
        bytes.insert(output.begin(), output.size() < 1000 ? output.end() : output.begin() + 1000);
    }
    EXPECT_EQ(bytes.size(), 256U);
}

TEST(GeneratedValues, NearTextsAreSometimesTheText)
{
    Generator any(5);
    std::set<std::string> found;
    for (int draw = 0; draw < 1000; ++draw) {
        found.insert(any.nearly("name"));
    }
    for (const char* text : {"name", "NAME", "name ", "nam", "name2", "xname"}) {
        EXPECT_EQ(found.count(text), 1U) << text;
    }
    EXPECT_GT(found.size(), 50U);
}

TEST(GeneratedValues, StatusesAreSuccessAndAnyFailure)
{
    Generator any(6);
    std::set<std::int32_t> found;
    int successes = 0;
    for (int draw = 0; draw < draws; ++draw) {
        const std::int32_t status = any.status();
        found.insert(status);
        successes += status == 0 ? 1 : 0;
    }
    EXPECT_GT(successes, draws / 3);
    EXPECT_LT(successes, draws * 2 / 3);
    EXPECT_GT(found.size(), 500U);
    for (const std::int32_t status : {1, -1, 127, 255, 256, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(found.count(status), 1U) << status;
    }
}

TEST(Words, AreWhatTheSixBlanksSeparate)
{
    EXPECT_EQ(wordsOf(""), std::vector<std::string>{});
    EXPECT_EQ(wordsOf(" \t\n\v\f\r"), std::vector<std::string>{});
    EXPECT_EQ(wordsOf(std::string(" a\0b\xC2\xA0\t\nc ", 10)), (std::vector<std::string>{{"a\0b\xC2\xA0", 5}, "c"}));
    EXPECT_EQ(trimmedText("\r\n a b \v"), "a b");
    EXPECT_EQ(trimmedText(" \f"), "");
}

} // namespace
