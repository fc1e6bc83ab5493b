// How arguments become a command line, and arrive.
#include "process_system.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

using orb::process::detail::getRunArguments;
using orb::process::detail::joinArguments;
using orb::process::detail::run;
using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;
using Arguments = std::vector<std::string>;

namespace {

std::string fromHex(const std::string& line)
{
    std::string text;
    for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
        text += static_cast<char>(std::stoi(line.substr(i, 2), nullptr, 16));
    }
    return text;
}

// What a real program receives when it is run with these arguments.
Arguments received(const Arguments& sent)
{
    Arguments all{"arguments"};
    all.insert(all.end(), sent.begin(), sent.end());
    const RunResult result = run(child(all));
    EXPECT_EQ(result.status, 0);
    Arguments arrived;
    std::istringstream lines(result.standardOutput);
    for (std::string line; std::getline(lines, line);) {
        arrived.push_back(fromHex(line));
    }
    return arrived;
}

struct Quoting {
    Arguments arguments;
    std::string line;
};

// Each row after the program name "p".
const std::vector<Quoting>& quotings()
{
    static const std::vector<Quoting> all{
        {{"plain"}, R"(p plain)"},
        {{"a b"}, R"(p "a b")"},
        {{R"(C:\no_space\)"}, R"(p C:\no_space\)"},
        {{R"(say "hi")"}, R"(p "say \"hi\"")"},
        {{""}, R"(p "")"},
        {{"", "", "x", ""}, R"(p "" "" x "")"},
        {{"tab\there"}, "p \"tab\there\""},
        {{R"(C:\dir with space\)", "next"}, R"(p "C:\dir with space\\" next)"},
        {{R"(a"b)"}, R"(p "a\"b")"},
        {{R"(back\" slash)"}, R"(p "back\\\" slash")"},
        {{R"(two\\" slashes)"}, R"(p "two\\\\\" slashes")"},
        {{R"("already quoted" text)"}, R"(p "\"already quoted\" text")"},
        {{R"("C:\dir with space\" x)"}, R"(p "\"C:\dir with space\\\" x")"},
        {{R"(")"}, R"(p "\"")"},
        {{R"(\)"}, R"(p \)"},
        {{R"(\\server\share)"}, R"(p \\server\share)"},
        {{R"(ends with blank and \ )"}, R"(p "ends with blank and \ ")"},
        {{"line\nbreak"}, "p line\nbreak"},
        {{"%PATH%", "^&|<>()!", "$HOME", "`x`", "'single'", "*", "~"}, "p %PATH% ^&|<>()! $HOME `x` 'single' * ~"},
        {{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x90\x99"}, "p \xC3\xA4\xE2\x82\xAC\xF0\x9F\x90\x99"},
    };
    return all;
}

} // namespace

TEST(ProcessArguments, AreQuotedOnlyWhenTheyMustBe)
{
    for (const Quoting& row : quotings()) {
        Arguments arguments{"p"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        EXPECT_EQ(joinArguments(arguments), row.line);
    }
}

TEST(ProcessArguments, ComeBackWhenTheirCommandLineIsSplit)
{
    for (const Quoting& row : quotings()) {
        Arguments arguments{"p"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        EXPECT_EQ(getRunArguments(joinArguments(arguments)), arguments) << row.line;
    }
}

TEST(ProcessArguments, ArriveByteForByte)
{
    for (const Quoting& row : quotings()) {
        EXPECT_EQ(received(row.arguments), row.arguments) << row.line;
    }
}

TEST(ProcessArguments, ArriveAlsoWhenTheyAreLong)
{
    const Arguments sent{std::string(30000, 'x'), "next"};
    EXPECT_EQ(received(sent), sent);
}

TEST(ProcessArguments, KeepBackslashesInTheProgramNameLiteral)
{
    EXPECT_EQ(joinArguments({R"(C:\dir with space\p\)", "x"}), R"("C:\dir with space\p\" x)");
    EXPECT_THAT(getRunArguments(R"("C:\dir with space\p\" x)"), ElementsAre(R"(C:\dir with space\p\)", "x"));
    EXPECT_THAT(getRunArguments(R"(C:\"dir with"\p.exe x)"), ElementsAre(R"(C:\dir with\p.exe)", "x"));
}

TEST(ProcessArguments, RefuseADoubleQuoteInTheProgramName)
{
    EXPECT_THAT([] { joinArguments({R"(a"b)"}); }, ThrowsMessage<std::invalid_argument>(HasSubstr(R"(a"b)")));
}

TEST(ProcessArguments, OfNothingAreAnEmptyLine)
{
    EXPECT_EQ(joinArguments({}), "");
    EXPECT_EQ(joinArguments({""}), R"("")");
    EXPECT_EQ(joinArguments({"p q"}), R"("p q")");
}

TEST(CommandLine, IsSplitAtBlanksAndTabs)
{
    EXPECT_THAT(getRunArguments("p a\tb   c"), ElementsAre("p", "a", "b", "c"));
    EXPECT_THAT(getRunArguments(" \tp  a \t"), ElementsAre("p", "a"));
    EXPECT_THAT(getRunArguments("p a\nb"), ElementsAre("p", "a\nb"));
    EXPECT_THAT(getRunArguments("p"), ElementsAre("p"));
}

TEST(CommandLine, WithoutTextGivesNoArguments)
{
    EXPECT_THAT(getRunArguments(""), IsEmpty());
    EXPECT_THAT(getRunArguments(" \t "), IsEmpty());
}

TEST(CommandLine, FollowsTheRulesOfQuotesAndBackslashes)
{
    EXPECT_THAT(getRunArguments(R"(p "a b" c)"), ElementsAre("p", "a b", "c"));
    EXPECT_THAT(getRunArguments(R"(p a" b"c)"), ElementsAre("p", "a bc"));
    EXPECT_THAT(getRunArguments(R"(p a\\b d"e f"g h)"), ElementsAre("p", R"(a\\b)", "de fg", "h"));
    EXPECT_THAT(getRunArguments(R"(p a\\\"b c d)"), ElementsAre("p", R"(a\"b)", "c", "d"));
    EXPECT_THAT(getRunArguments(R"(p a\\\\"b c" d e)"), ElementsAre("p", R"(a\\b c)", "d", "e"));
    EXPECT_THAT(getRunArguments(R"(p "a""b" c)"), ElementsAre("p", R"(a"b)", "c"));
    EXPECT_THAT(getRunArguments(R"(p "" c)"), ElementsAre("p", "", "c"));
    EXPECT_THAT(getRunArguments(R"(p "never closed c)"), ElementsAre("p", "never closed c"));
    EXPECT_THAT(getRunArguments(R"(p a\)"), ElementsAre("p", R"(a\)"));
    EXPECT_THAT(getRunArguments(R"(p a\ b)"), ElementsAre("p", R"(a\)", "b"));
    EXPECT_THAT(getRunArguments(R"(p "a b\" c)"), ElementsAre("p", R"(a b" c)"));
}

TEST(ProcessArguments, ThatCannotBePassedFaithfullyAreRefused)
{
    const std::string nul("a\0b", 3);
    EXPECT_THROW(run({}), std::invalid_argument);
    EXPECT_THROW(run(child({"print", nul, ""})), std::invalid_argument);
    EXPECT_THROW(run({nul}), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {}, nul), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {{nul, "value"}}), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {{"NAME", nul}}), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {{"", "value"}}), std::invalid_argument);
    EXPECT_THROW(run(child({"folder"}), {{"NA=ME", "value"}}), std::invalid_argument);
}
