#include "terminal/table.h"

#include <gmock/gmock.h>

namespace {

using kelpctl::Mark;
using kelpctl::TableLines;
using kelpctl::wrapped;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TableLines, ColumnsAreAligned)
{
    TableLines table(false);
    table.section("first");
    table.row(Mark::ok, "label", "value");
    table.more("another");
    table.section("second");
    table.row(Mark::problem, "a longer label", "v");
    table.row(Mark::none, "empty", "");
    EXPECT_THAT(table.take(), ElementsAre("first", "  ok       label                   value", //
                                          "                                   another", "", "second",
                                          "  PROBLEM  a longer label          v", "           empty"));
}

TEST(TableLines, WordsHaveColoursAndTheColumnsStay)
{
    TableLines table(true);
    table.section("first");
    table.row(Mark::ok, "label", "value");
    table.row(Mark::note, "label", "value");
    table.row(Mark::problem, "label", "value");
    table.row(Mark::none, "label", "value");
    EXPECT_THAT(table.take(),
                ElementsAre("\x1b[1mfirst\x1b[0m", "  \x1b[32mok\x1b[0m       label                   value",
                            "  \x1b[33mnote\x1b[0m     label                   value",
                            "  \x1b[1;31mPROBLEM\x1b[0m  label                   value",
                            "           label                   value"));
}

TEST(TableLines, TerminalObeysNothing)
{
    TableLines table(false);
    table.row(Mark::none, "la\nbel", "\x1b[31mred\r\n");
    table.text(Mark::note, "one\x07\ntwo");
    EXPECT_THAT(table.take(), ElementsAre("           la\\nbel                 \\x1B[31mred\\r\\n",
                                          "  note     one\\x07", "           two"));
}

TEST(TableLines, LettersOfSeveralBytesCountOnce)
{
    TableLines table(false);
    table.row(Mark::none, "h\xc3\xa9", "v");
    table.row(Mark::none, "he", "v");
    const std::vector<std::string> lines = table.take();
    EXPECT_EQ(lines[0].size(), lines[1].size() + 1);
}

TEST(TableLines, EndlessValueIsCutBetweenLetters)
{
    TableLines table(false);
    std::string value = "x";
    for (int count = 0; count < 1000; ++count) {
        value += "\xe6\xbc\xa2";
    }
    table.row(Mark::none, "name", value);
    const std::string line = table.take().front();
    EXPECT_LT(line.size(), 700U);
    EXPECT_TRUE(line.ends_with("\xe6\xbc\xa2 ..."));
}

TEST(TableLines, LabelThatIsTooLongDoesNotTouchTheValue)
{
    TableLines table(false);
    table.row(Mark::none, std::string(30, 'l'), "value");
    EXPECT_THAT(table.take(), ElementsAre("           " + std::string(30, 'l') + " value"));
}

TEST(Wrapping, LinesAreBrokenAtBlanks)
{
    EXPECT_THAT(wrapped("one two three", 8), ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("one two three", 13), ElementsAre("one two three"));
    EXPECT_THAT(wrapped("a verylongword b", 4), ElementsAre("a", "verylongword", "b"));
    EXPECT_THAT(wrapped("", 4), IsEmpty());
}

} // namespace
