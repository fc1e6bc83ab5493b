#include "failure/output.h"

#include "fake_lvm.h"
#include "session.h"

#include "commands/program.h"
#include "host/exceptions.h"
#include "orb/lvm.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <sstream>

namespace {

namespace json = boost::json;
using testing::HasSubstr;

void throwMissingArchive()
{
    using namespace orb::container_support;
    throw foundation::core::except::Exception<TAR_FILE_NOT_AVAILABLE, std::exception, void>(
        {catalogue, TAR_FILE_NOT_AVAILABLE::identifier, {std::string("hub.tar")}});
}

TEST(Output, FailureIsTextOnStandardError)
{
    fakeLvm().duringImport = throwMissingArchive;
    Session session;
    EXPECT_EQ(session.run({"setup"}), 1);
    EXPECT_EQ(session.out, "");
    EXPECT_THAT(session.error, testing::StartsWith("kelpctl setup: The archive hub.tar does not exist.\n"
                                                   "error: TAR_FILE_NOT_AVAILABLE\n"
                                                   "next step: "));
}

TEST(Output, FailureIsAnObjectForPrograms)
{
    fakeLvm().duringImport = throwMissingArchive;
    Session session;
    EXPECT_EQ(session.run({"setup", "--json"}), 1);
    EXPECT_EQ(session.error, "");
    const json::value object = session.json();
    EXPECT_EQ(object.at("command"), "setup");
    EXPECT_EQ(object.at("ok"), false);
    EXPECT_TRUE(object.at("result").is_null());
    EXPECT_EQ(object.at("error").at("identifier"), "TAR_FILE_NOT_AVAILABLE");
    EXPECT_EQ(object.at("error").at("message"), "The archive hub.tar does not exist.");
    EXPECT_EQ(object.at("error").at("arguments"), json::array{"hub.tar"});
    EXPECT_TRUE(object.at("error").at("cause").is_null());
    EXPECT_TRUE(object.at("error").at("evidence").is_null());
    EXPECT_FALSE(object.at("error").at("next").as_string().empty());
}

TEST(Output, SuccessIsAnObjectForPrograms)
{
    Session session;
    EXPECT_EQ(session.run({"--json", "setup"}), 0);
    EXPECT_EQ(session.out, R"({"command":"setup","ok":true,"result":{"kind":"distribution","name":"kelp_hub_R1",)"
                           R"("created":false,"source":null,"notes":[]},"error":null})"
                           "\n");
}

TEST(Output, WrongUsageIsText)
{
    Session session;
    EXPECT_EQ(session.run({"remove", "a", "b"}), 2);
    EXPECT_EQ(session.out, "");
    EXPECT_THAT(session.error, testing::StartsWith("kelpctl remove: "));
    EXPECT_THAT(session.error, HasSubstr("error: USAGE\n"));
    EXPECT_THAT(session.error, HasSubstr("kelpctl remove --help"));
    EXPECT_TRUE(fakeLvm().calls.empty());
}

TEST(Output, WrongUsageIsAnObjectForPrograms)
{
    Session session;
    EXPECT_EQ(session.run({"--json", "nonsense"}), 2);
    EXPECT_EQ(session.error, "");
    EXPECT_EQ(session.json().at("command"), "");
    EXPECT_EQ(session.json().at("ok"), false);
    EXPECT_EQ(session.json().at("error").at("identifier"), "USAGE");
}

TEST(Output, HelpGoesToStandardOutput)
{
    Session session;
    EXPECT_EQ(session.run({"--help"}), 0);
    EXPECT_THAT(session.out, HasSubstr("Examples:"));
    EXPECT_EQ(session.error, "");
}

TEST(Output, TerminalObeysNothingInAFailure)
{
    std::ostringstream out;
    std::ostringstream error;
    kelpctl::Console console{out, error};
    kelpctl::Report report;
    report.identifier = "X";
    report.text = "one\n\x1b[2Jtwo\n";
    report.cause = {"Y", "Why\x07."};
    report.evidence = kelpctl::runOf({"tool", "an argument", ""}, {-1, "first\nsecond\x1b[0m", {}});
    report.code = "Wsl/X";
    report.nextStep = "Do it.";
    kelpctl::writeText(console, "", {{}, nullptr, report});
    EXPECT_EQ(error.str(), "kelpctl: one\n"
                           "    \\x1B[2Jtwo\n"
                           "error: X\n"
                           "cause: Why\\x07.\n"
                           "evidence: tool \"an argument\" \"\"\n"
                           "    status: -1 (0xFFFFFFFF)\n"
                           "    code: Wsl/X\n"
                           "    standard output: first\n"
                           "        second\\x1B[0m\n"
                           "next step: Do it.\n");
}

TEST(Output, EvidenceDoesNotRepeatTheText)
{
    std::ostringstream out;
    std::ostringstream error;
    kelpctl::Console console{out, error};
    kelpctl::Report report;
    report.text = "It said: broken\nfor ever";
    report.evidence = kelpctl::runOf({"tool"}, {1, "broken\nfor ever\n", "something else"});
    kelpctl::writeText(console, "", {{}, nullptr, report});
    EXPECT_THAT(error.str(), testing::Not(HasSubstr("standard output")));
    EXPECT_THAT(error.str(), HasSubstr("    standard error: something else\n"));
}

TEST(Output, ProgramThatWasNotStartedHasNoStatus)
{
    std::ostringstream out;
    std::ostringstream error;
    kelpctl::Console console{out, error};
    kelpctl::Report report;
    report.evidence = kelpctl::runThatDidNotStart({"tool"}, {});
    kelpctl::writeText(console, "", {{}, nullptr, report});
    EXPECT_THAT(error.str(), HasSubstr("evidence: tool\n    status: not started\nnext step: "));
    kelpctl::writeJson(console, "", {{}, nullptr, report});
    EXPECT_EQ(json::parse(out.str()).at("error").at("evidence"),
              json::parse(R"({"arguments": ["tool"], "status": null, "hexadecimal": null, "output": null,
                              "error": null, "code": null})"));
}

TEST(Output, ColoursAreForTerminalsThatShowThem)
{
    fakeLvm().duringImport = throwMissingArchive;
    Session session;
    session.run({"setup"});
    EXPECT_THAT(session.error, testing::Not(HasSubstr("\x1b")));
    session.errorColours = true;
    session.run({"setup"});
    EXPECT_THAT(session.error, HasSubstr("\x1b[1;31merror: \x1b[0mTAR_FILE_NOT_AVAILABLE\n"));
}

TEST(Output, TextThatIsNotUtf8StillMakesAnObject)
{
    Session session;
    EXPECT_EQ(session.run({"env", "--json", "--", "\xFF"}), 0);
    EXPECT_EQ(session.json().at("result").at("arguments"), json::array{"\xEF\xBF\xBD"});
}

TEST(Output, ResultThatCannotBeWrittenIsAFailure)
{
    std::ostream out(nullptr);
    std::ostringstream error;
    kelpctl::Console console{out, error};
    EXPECT_EQ(kelpctl::run({"prefix", "--wsl"}, console, {}), 1);
    EXPECT_THAT(error.str(), HasSubstr("error: OUTPUT_NOT_WRITABLE\n"));
}

} // namespace
