#include "terminal/mask.h"

#include "generator.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include <string>

namespace {

using kelpctl::Mask;
using kelpctl::withoutCredentials;

std::string wide(const std::string& ascii)
{
    std::string bytes;
    for (const char character : ascii) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

Mask mask()
{
    Mask made;
    made.addSecret("tr0ub4dor");
    made.addSecret("tr0ub4dor&3");
    made.addName("me");
    made.addName("build-7");
    return made;
}

TEST(Mask, SecretGoesWhereverItStands)
{
    EXPECT_EQ(mask().applied("A=tr0ub4dor;xtr0ub4dory"), "A=***;x***y");
    EXPECT_EQ(mask().applied("tr0ub4dor&3"), "***") << "the longer one leaves no rest";
    EXPECT_EQ(mask().applied("TR0UB4DOR"), "TR0UB4DOR");
}

TEST(Mask, NameGoesAsAWordInAnyCase)
{
    EXPECT_EQ(mask().applied("C:\\Users\\ME\\x, home of me on Build-7."), "C:\\Users\\***\\x, home of *** on ***.");
    EXPECT_EQ(mask().applied("some memory, me_too, me2"), "some memory, me_too, me2");
    EXPECT_EQ(mask().applied("me"), "***");
}

TEST(Mask, BothGoInUtf16)
{
    EXPECT_EQ(mask().applied(wide("A=tr0ub4dor of me, some")), wide("A=*** of ***, some"));
    EXPECT_EQ(mask().applied("\xff" + wide("tr0ub4dor")), "\xff" + wide("***"));
}

TEST(Mask, ShortSecretGoesOnlyWhereItStandsAlone)
{
    Mask made;
    made.addSecret("sh");
    EXPECT_EQ(made.applied("sh"), "sh");
    EXPECT_EQ(made.appliedToTexts(boost::json::parse(R"(["sh", "push", {"sh": "a sh"}])")),
              boost::json::parse(R"(["***", "push", {"sh": "a sh"}])"));
}

TEST(Mask, LeavesTheNamesOfMembersAndAllThatIsNoText)
{
    EXPECT_EQ(mask().appliedToTexts(boost::json::parse(R"({"me": ["by me", 7, null, true, {"x": "tr0ub4dor"}]})")),
              boost::json::parse(R"({"me": ["by ***", 7, null, true, {"x": "***"}]})"));
}

TEST(Mask, EmptyOnesAndSingleLettersMaskNothing)
{
    Mask made;
    made.addSecret("");
    made.addName("");
    made.addName("x");
    EXPECT_EQ(made.applied("x y"), "x y");
}

TEST(Mask, SecretOnTheBorderOfWhatIsKeptLeavesNothing)
{
    const std::size_t kept = 1 << 20;
    for (std::size_t before = kept - 9; before <= kept; ++before) {
        const std::string text = mask().beginningOf(std::string(before, ' ') + "tr0ub4dor" + std::string(100, ' '));
        EXPECT_LE(text.size(), kept);
        EXPECT_EQ(text.find("tr"), std::string::npos) << before;
    }
}

TEST(Mask, NoSecretStaysInAnyBytes)
{
    Generator generator(7);
    for (int round = 0; round < 500; ++round) {
        const std::string secret = "p" + generator.word() + "&w0rd";
        Mask made;
        made.addSecret(secret);
        const std::string text = generator.output() + secret + generator.output() + secret + secret;
        EXPECT_EQ(made.applied(text).find(secret), std::string::npos) << secret;
    }
}

TEST(Credentials, GoOutOfAddresses)
{
    EXPECT_EQ(withoutCredentials("ssh://me@host tcp://a:b@h:1/x http://h/p@q"),
              "ssh://***@host tcp://***@h:1/x http://h/p@q");
    EXPECT_EQ(withoutCredentials("proxy=\"http://u:p@ss@proxy:1\""), "proxy=\"http://***@proxy:1\"");
    EXPECT_EQ(withoutCredentials("me@host, a://"), "me@host, a://");
    EXPECT_EQ(withoutCredentials(""), "");
}

} // namespace
