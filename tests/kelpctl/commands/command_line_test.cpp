#include "commands/command_line.h"

#include "commands/commands.h"

#include <gmock/gmock.h>

#include <chrono>

namespace {

using kelpctl::Backend;
using kelpctl::LogLevel;
using kelpctl::parseCommandLine;
using kelpctl::Request;
using kelpctl::requestsJson;
using kelpctl::UsageError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

using Arguments = std::vector<std::string>;

TEST(CommandLine, SetupTakesAnArchiveOrNone)
{
    EXPECT_EQ(parseCommandLine({"setup"}).archive, "");
    const Request request = parseCommandLine({"setup", "a b.tar"});
    EXPECT_EQ(request.command, "setup");
    EXPECT_EQ(request.archive, "a b.tar");
}

TEST(CommandLine, LocationIsAFolder)
{
    EXPECT_FALSE(parseCommandLine({"setup"}).location.has_value());
    for (const char* command : {"setup", "provision", "doctor"}) {
        EXPECT_EQ(parseCommandLine({command, "--location", "/d"}).location, "/d");
        EXPECT_THROW(parseCommandLine({command, "--location="}), UsageError);
    }
}

TEST(CommandLine, PathThatBeginsWithASlashIsNoFlag)
{
    EXPECT_EQ(parseCommandLine({"setup", "/tmp/hub.tar"}).archive, "/tmp/hub.tar");
    EXPECT_EQ(parseCommandLine({"provision", "--archive", "/f"}).archive, "/f");
}

TEST(CommandLine, ArchiveBehindTheMarkMayLookLikeAFlag)
{
    EXPECT_EQ(parseCommandLine({"setup", "--", "--odd.tar"}).archive, "--odd.tar");
}

TEST(CommandLine, ProvisionTakesArchiveNameAndKind)
{
    const Request request = parseCommandLine({"provision", "--archive", "f", "--name", "n", "--root-fs"});
    EXPECT_EQ(request.archive, "f");
    EXPECT_EQ(request.name, "n");
    EXPECT_TRUE(request.rootFs);
    EXPECT_FALSE(parseCommandLine({"provision"}).rootFs);
}

TEST(CommandLine, ArchiveTakesOneFileAndWhatItIsToBe)
{
    const Request request = parseCommandLine({"archive", "f", "--name", "n", "--root-fs"});
    EXPECT_EQ(request.archive, "f");
    EXPECT_EQ(request.name, "n");
    EXPECT_TRUE(request.rootFs);
    EXPECT_TRUE(parseCommandLine({"archive", "f", "--root-fs"}).rootFs) << "no name is needed to read it";
    EXPECT_THROW(parseCommandLine({"archive"}), UsageError);
    EXPECT_THROW(parseCommandLine({"archive", "f", "g"}), UsageError);
    EXPECT_THROW(parseCommandLine({"archive", "f", "--force"}), UsageError);
}

TEST(CommandLine, WhatCreatesMayBeForced)
{
    EXPECT_TRUE(parseCommandLine({"setup", "--force"}).force);
    EXPECT_TRUE(parseCommandLine({"provision", "--force"}).force);
    EXPECT_FALSE(parseCommandLine({"setup"}).force);
}

TEST(CommandLine, RemoveTakesANameThatMayBeACommand)
{
    EXPECT_EQ(parseCommandLine({"remove"}).name, "");
    const Request request = parseCommandLine({"remove", "setup"});
    EXPECT_EQ(request.command, "remove");
    EXPECT_EQ(request.name, "setup");
}

TEST(CommandLine, ContainerPairTakesNames)
{
    const Request start = parseCommandLine({"start", "--container", "c", "--image", "i"});
    EXPECT_EQ(start.container, "c");
    EXPECT_EQ(start.image, "i");
    EXPECT_EQ(parseCommandLine({"stop", "--container", "c"}).container, "c");
}

TEST(CommandLine, GlobalFlagsStandOnEitherSideOfTheCommand)
{
    for (const Arguments& arguments : {Arguments{"--root", "r", "--release", "x", "--docker", "--json", "--language",
                                                 "de", "--log", "detail", "--log-file", "l", "prefix"},
                                       Arguments{"prefix", "--root", "r", "--release", "x", "--docker", "--json",
                                                 "--language", "de", "--log", "detail", "--log-file", "l"}}) {
        const Request request = parseCommandLine(arguments);
        EXPECT_EQ(request.command, "prefix");
        EXPECT_EQ(request.root, "r");
        EXPECT_EQ(request.release, "x");
        EXPECT_EQ(request.backend, Backend::docker);
        EXPECT_TRUE(request.json);
        EXPECT_EQ(request.language, "de");
        EXPECT_EQ(request.log, LogLevel::detail);
        EXPECT_EQ(request.logFile, "l");
    }
}

TEST(CommandLine, NothingIsSetThatWasNotGiven)
{
    const Request request = parseCommandLine({"check"});
    EXPECT_FALSE(request.root.has_value());
    EXPECT_FALSE(request.release.has_value());
    EXPECT_FALSE(request.language.has_value());
    EXPECT_FALSE(request.logFile.has_value());
    EXPECT_FALSE(request.backend.has_value());
    EXPECT_EQ(request.log, LogLevel::none);
    EXPECT_FALSE(request.json);
}

TEST(CommandLine, EmptyValuesStayWithTheirFlag)
{
    EXPECT_EQ(parseCommandLine({"remove", "--release=", "name"}).name, "name");
    EXPECT_EQ(parseCommandLine({"provision", "--name=", "--archive", ""}).name, "");
    EXPECT_EQ(parseCommandLine({"provision", "--name", "", "--archive", "a"}).archive, "a");
}

TEST(CommandLine, NothingBehindTheMarkIsTouched)
{
    const Arguments program = {"ls", "", "--json", "--", "-e", "[a,b]", "--help", "%X%", "setup", "\"q\"", "a\\"};
    Arguments arguments = {"exec", "--"};
    arguments.insert(arguments.end(), program.begin(), program.end());
    const Request request = parseCommandLine(arguments);
    EXPECT_EQ(request.program, program);
    EXPECT_FALSE(request.json);
}

TEST(CommandLine, VariablesAreReadInFrontOfTheMark)
{
    const Request request = parseCommandLine(
        {"exec", "-e", "A=1", "-e", "B=x=y", "-e", "C=", "-e", "D=[1,2]", "-e", "A=2", "--container", "c", "--", "p"});
    EXPECT_THAT(request.environment, ElementsAre(Pair("A", "2"), Pair("B", "x=y"), Pair("C", ""), Pair("D", "[1,2]")));
    EXPECT_EQ(request.container, "c");
    EXPECT_THAT(request.program, ElementsAre("p"));
}

TEST(CommandLine, EnvTakesNoArgumentsAtAll)
{
    EXPECT_THAT(parseCommandLine({"env"}).program, IsEmpty());
    EXPECT_THAT(parseCommandLine({"env", "--"}).program, IsEmpty());
    EXPECT_THAT(parseCommandLine({"env", "--", ""}).program, ElementsAre(""));
}

TEST(CommandLine, VersionNeedsNoCommand)
{
    EXPECT_EQ(parseCommandLine({"--version"}).command, "version");
    EXPECT_TRUE(parseCommandLine({"--json", "--version"}).json);
}

TEST(CommandLine, HelpShowsAnExampleForEachCommand)
{
    const Request all = parseCommandLine({"--help"});
    EXPECT_EQ(all.command, "help");
    for (const std::string& name : listedNames(kelpctl::allCommands())) {
        const Request one = parseCommandLine({name, "--help"});
        EXPECT_EQ(one.command, "help");
        const std::size_t start = one.helpText.find("Example: ");
        ASSERT_NE(start, std::string::npos) << name;
        EXPECT_THAT(one.helpText.substr(start), HasSubstr(name));
        EXPECT_THAT(all.helpText, HasSubstr(name));
    }
}

TEST(CommandLine, HelpTellsOfTheEnvironment)
{
    const std::string text = parseCommandLine({"--help"}).helpText;
    for (const char* name : {"USE_WSL", "USE_DOCKER_REPOSITORY", "AUX_DOCKER_ARGS", "KELP_ADDITIONAL_LOGGING",
                             "KORVANE_ROOT", "KORVANE_RELEASE", "NO_COLOR"}) {
        EXPECT_THAT(text, HasSubstr(name));
    }
}

TEST(CommandLine, HelpOfOneCommandHasTwoNames)
{
    EXPECT_EQ(parseCommandLine({"help", "start"}).helpText, parseCommandLine({"start", "--help"}).helpText);
    EXPECT_EQ(parseCommandLine({"help"}).helpText, parseCommandLine({"--help"}).helpText);
}

TEST(CommandLine, DoctorTakesATimeLimit)
{
    EXPECT_EQ(parseCommandLine({"doctor"}).timeLimit, std::chrono::seconds{10});
    EXPECT_EQ(parseCommandLine({"doctor", "--time-limit", "3"}).timeLimit, std::chrono::seconds{3});
}

TEST(CommandLine, CompletionTakesAShell)
{
    EXPECT_EQ(parseCommandLine({"completion", "bash"}).shell, "bash");
    EXPECT_EQ(parseCommandLine({"completion", "powershell"}).shell, "powershell");
}

struct Answer {
    Arguments arguments;
    const char* text;
};

void PrintTo(const Answer& answer, std::ostream* stream)
{
    *stream << answer.text;
}

class WrongCommand : public testing::TestWithParam<Answer> {};

TEST_P(WrongCommand, GetsAnAnswerThatLeadsToTheRightOne)
{
    try {
        parseCommandLine(GetParam().arguments);
        FAIL() << "no exception";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, WrongCommand,
    testing::Values(Answer{{}, "A command is required."},
                    Answer{{"stup"}, "There is no command \"stup\". Did you mean \"setup\"?"},
                    Answer{{"dotcor"}, "There is no command \"dotcor\". Did you mean \"doctor\"?"},
                    Answer{{"nonsense"}, "There is no command \"nonsense\"."},
                    Answer{{"TEAR"}, "There is no command \"TEAR\". Did you mean \"teardown\"?"},
                    Answer{{"version"}, "There is no command \"version\". Did you mean \"--version\"?"},
                    Answer{{"docker", "setup"},
                           "There is no place for the argument \"docker\". Did you mean \"--docker\"?"},
                    Answer{{"--docer", "setup"}, "There is no flag \"--docer\". Did you mean \"--docker\"?"},
                    Answer{{"provision", "--arch", "x"}, "There is no flag \"--arch\". Did you mean \"--archive\"?"},
                    Answer{{"--verbose"}, "There is no flag \"--verbose\"."},
                    Answer{{"setup", "--archive", "a"}, "There is no flag \"--archive\"."},
                    Answer{{"setup", "a", "b"}, "There is no place for the argument \"b\"."},
                    Answer{{"exec", "ls"}, "The program needs \"--\" in front of it: \"kelpctl exec -- ls\"."},
                    Answer{{"exec"}, "A program is required, with \"--\" in front of it."},
                    Answer{{"exec", "--", ""}, "A program is required, with \"--\" in front of it."},
                    Answer{{"help", "exce"}, "There is no command \"exce\". Did you mean \"exec\"?"}));

class WrongUsage : public testing::TestWithParam<Arguments> {};

TEST_P(WrongUsage, IsRefused)
{
    EXPECT_THROW(parseCommandLine(GetParam()), UsageError);
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, WrongUsage,
    testing::Values(Arguments{}, Arguments{"nonsense"}, Arguments{"--nonsense"}, Arguments{"setup", "a", "b"},
                    Arguments{"setup", "--", "a", "b"}, Arguments{"check", "x"}, Arguments{"check", "--", "x"},
                    Arguments{"--wsl", "--docker", "check"}, Arguments{"check", "--wsl", "--docker"},
                    Arguments{"--log", "loud", "check"}, Arguments{"check", "--log"},
                    Arguments{"--log-file", "f", "check"}, Arguments{"--language", "DE", "check"},
                    Arguments{"--language", "../x", "check"}, Arguments{"--language", "", "check"}, Arguments{"exec"},
                    Arguments{"exec", "ls"}, Arguments{"exec", "--"}, Arguments{"exec", "--", ""},
                    Arguments{"exec", "-e", "NAME", "--", "ls"}, Arguments{"exec", "-e", "=1", "--", "ls"},
                    Arguments{"exec", "-e", "/p=1", "--", "ls"}, Arguments{"exec", "-e", "--", "ls"},
                    Arguments{"exec", "-e", "A=1", "B=2", "--", "ls"}, Arguments{"env", "--container", "c", "--", "ls"},
                    Arguments{"remove", "a", "b"}, Arguments{"setup", "--archive", "a"}, Arguments{"start", "stop"},
                    Arguments{"completion"}, Arguments{"completion", "fish"}, Arguments{"doctor", "--time-limit", "0"},
                    Arguments{"doctor", "--time-limit", "x"}, Arguments{"doctor", "x"}));

TEST(CommandLine, WrongUsageNamesTheCommandThatWasFound)
{
    try {
        parseCommandLine({"remove", "a", "b"});
        FAIL() << "no exception";
    } catch (const UsageError& error) {
        EXPECT_EQ(error.command(), "remove");
        EXPECT_THAT(error.what(), HasSubstr("b"));
    }
}

TEST(CommandLine, WrongVariableIsNotRepeated)
{
    try {
        parseCommandLine({"exec", "-e", "secret", "--", "ls"});
        FAIL() << "no exception";
    } catch (const UsageError& error) {
        EXPECT_EQ(std::string(error.what()), "-e takes NAME=VALUE.");
        EXPECT_EQ(error.command(), "exec");
    }
}

TEST(CommandLine, LanguageIsSeenInALineThatMeansNothing)
{
    EXPECT_EQ(kelpctl::requestedLanguage({"nonsense", "--language", "de"}), "de");
    EXPECT_EQ(kelpctl::requestedLanguage({"--language=fr", "nonsense"}), "fr");
    EXPECT_FALSE(kelpctl::requestedLanguage({"exec", "--", "--language", "de"}).has_value());
    EXPECT_FALSE(kelpctl::requestedLanguage({"--language"}).has_value());
}

TEST(CommandLine, JsonIsSeenInFrontOfTheMarkOnly)
{
    EXPECT_TRUE(requestsJson({"nonsense", "--json"}));
    EXPECT_FALSE(requestsJson({"exec", "--", "--json"}));
    EXPECT_FALSE(requestsJson({}));
}

} // namespace
