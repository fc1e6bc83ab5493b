#include "commands/commands.h"

#include "fake_lvm.h"
#include "session.h"

#include "host/configuration.h"
#include "host/install.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <span>
#include <sstream>
#include <string>

namespace {

namespace json = boost::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

TEST(Commands, SetupIsTheGateway)
{
    Session session;
    EXPECT_EQ(session.run({"setup"}), 0);
    EXPECT_EQ(session.run({"setup", "grüße 1.tar"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("gateway setup", "gateway setup [grüße 1.tar]"));
    EXPECT_EQ(session.error, "");
}

TEST(Commands, ProvisioningThatFindsTheEnvironmentSaysSo)
{
    for (const char* command : {"setup", "provision"}) {
        Session session;
        EXPECT_EQ(session.run({command}), 0);
        EXPECT_EQ(session.out, "The distribution kelp_hub_R1 exists already; nothing was created.\n");
        session.run({command, "--docker", "--json"});
        EXPECT_EQ(
            session.json().at("result"),
            json::parse(R"({"kind": "image", "name": "kelp_hub_R1", "created": false, "source": null, "notes": []})"));
    }
}

struct Source {
    std::vector<std::string> arguments;
    const char* source;
};

void PrintTo(const Source& source, std::ostream* stream)
{
    *stream << source.arguments.at(1);
}

class Provisioning : public testing::TestWithParam<Source> {};

TEST_P(Provisioning, SaysWhatTheEnvironmentWasMadeFrom)
{
    fakeLvm().duringImport = [] {
        ranProgram({"tool", "images"}, {0, {}, {}});
        ranProgram(GetParam().arguments, {0, {}, {}});
        ranProgram({"tool", "images"}, {0, {}, {}});
    };
    Session session;
    EXPECT_EQ(session.run({"provision", "--name", "hub"}), 0);
    EXPECT_EQ(session.out, std::string("The distribution hub was created from ") + GetParam().source + ".\n");
    session.run({"provision", "--json"});
    EXPECT_EQ(session.json().at("result").at("created"), true);
    EXPECT_EQ(session.json().at("result").at("source"), GetParam().source);
}

INSTANTIATE_TEST_SUITE_P(Commands, Provisioning,
                         testing::Values(Source{{"wsl.exe", "--import", "hub", "folder", "a.tar", "--version", "2"},
                                                "a.tar"},
                                         Source{{"docker.exe", "load", "-i", "a.tar"}, "a.tar"},
                                         Source{{"docker.exe", "import", "a.tar", "hub"}, "a.tar"},
                                         Source{{"docker.exe", "pull", "-q", "zqkelp/hub:1"}, "zqkelp/hub:1"}));

TEST(Commands, SourceThatFailedIsNone)
{
    fakeLvm().duringImport = [] {
        ranProgram({"docker.exe", "pull", "-q", "zqkelp/hub:1"}, {1, {}, "x"});
        ranProgram({"docker.exe", "load", "-i", "a.tar"}, {0, {}, {}});
    };
    Session session;
    session.run({"--docker", "setup", "--json"});
    EXPECT_EQ(session.json().at("result").at("source"), "a.tar");
}

TEST(Commands, HelpIsACommandToo)
{
    Session session;
    EXPECT_EQ(session.run({"help"}), 0);
    EXPECT_THAT(session.out, HasSubstr("Examples:"));
    EXPECT_EQ(session.run({"help", "exec"}), 0);
    EXPECT_THAT(session.out, HasSubstr("Usage: kelpctl exec [OPTIONS] -- PROGRAM [ARG...]\n"));
    EXPECT_EQ(session.run({"help", "--json", "exec"}), 0);
    EXPECT_THAT(session.json().at("result").at("text").as_string(), HasSubstr("kelpctl exec"));
    EXPECT_EQ(session.run({"help", "nonsense"}), 2);
}

TEST(Commands, CompletionPrintsAScript)
{
    Session session;
    EXPECT_EQ(session.run({"completion", "bash"}), 0);
    EXPECT_THAT(session.out, HasSubstr("complete -o default -F _kelpctl kelpctl"));
    EXPECT_EQ(session.run({"completion", "powershell"}), 0);
    EXPECT_THAT(session.out, HasSubstr("Register-ArgumentCompleter"));
    EXPECT_EQ(session.run({"completion", "fish"}), 2);
}

TEST(Commands, CompletePrintsCandidates)
{
    Session session;
    EXPECT_EQ(session.run({"complete", "--", "tear"}), 0);
    EXPECT_EQ(session.out, "teardown\n");
    EXPECT_EQ(session.run({"complete", "--next", "--", "completion"}), 0);
    EXPECT_EQ(session.out, "bash\npowershell\n");
}

TEST(Commands, LanguageWithoutMessagesIsTold)
{
    Session session;
    EXPECT_EQ(session.run({"--language", "xx", "check"}), 0);
    EXPECT_EQ(session.out, "0\n");
    EXPECT_EQ(session.error,
              "kelpctl: resources/kelpctl.xx.json is missing or broken; kelpctl's own messages are in English.\n");
    session.run({"--language", "en", "check"});
    EXPECT_EQ(session.error, "");
}

#ifndef _WIN32
TEST(Commands, LanguageIsTheSystemsUnlessGiven)
{
    Session session;
    setVariable("LANG", "fr_FR.UTF-8");
    session.run({"check"});
    EXPECT_EQ(foundation::core::config::configuration().language(), "fr");
    EXPECT_EQ(session.error, "");
    session.run({"check", "--language", "en"});
    EXPECT_EQ(foundation::core::config::configuration().language(), "en");
}
#endif

TEST(Commands, CheckPrintsZero)
{
    Session session;
    EXPECT_EQ(session.run({"check"}), 0);
    EXPECT_EQ(session.out, "0\n");
    EXPECT_EQ(session.error, "");
}

TEST(Commands, CheckThatFailsPrintsTheNumberAndTheNextStep)
{
    fakeLvm().checkResult = -3;
    Session session;
    EXPECT_EQ(session.run({"check"}), 1);
    EXPECT_EQ(session.out, "-3\n");
    EXPECT_THAT(session.error, HasSubstr("error: WSL_NOT_USABLE\n"));
    EXPECT_THAT(session.error, HasSubstr("next step: "));
    EXPECT_EQ(session.run({"check", "--json"}), 1);
    EXPECT_EQ(session.json().at("result"), -3);
    EXPECT_EQ(session.json().at("ok"), false);
}

TEST(Commands, ProvisionPassesEverythingOn)
{
    Session session;
    EXPECT_EQ(session.run({"provision"}), 0);
    EXPECT_EQ(session.run({"provision", "--archive", "a", "--name", "n", "--root-fs"}), 0);
    EXPECT_EQ(session.run({"provision", "--archive", "a", "--root-fs"}), 2) << "an image without a name is of no use";
    EXPECT_THAT(fakeLvm().calls, ElementsAre("import [] [] [image]", "import [a] [n] [rootfs]"));
}

TEST(Commands, StandardOutputIsKeptForResults)
{
    fakeLvm().duringImport = [] { std::cout << "ERROR in the pull" << std::endl; };
    std::ostringstream standardOutput;
    std::streambuf* before = std::cout.rdbuf(standardOutput.rdbuf());
    Session session;
    const int status = session.run({"provision", "--json"});
    std::cout.rdbuf(before);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(standardOutput.str(), "");
    EXPECT_EQ(session.error, "ERROR in the pull\n");
    EXPECT_EQ(session.json().at("ok"), true);
}

TEST(Commands, ContainerPairPassesNamesOn)
{
    Session session;
    EXPECT_EQ(session.run({"start", "--container", "c", "--image", "i"}), 0);
    EXPECT_EQ(session.run({"start"}), 0);
    EXPECT_EQ(session.run({"stop", "--container", "c"}), 0);
    EXPECT_THAT(fakeLvm().calls, ElementsAre("start [c] [i]", "start [] []", "stop [c]"));
    EXPECT_EQ(session.error, "");
}

TEST(Commands, ContainerPairSaysWhatItDid)
{
    Session session;
    session.run({"--docker", "start"});
    EXPECT_EQ(session.out, "The container kelp_hub was started.\n");
    session.run({"--docker", "stop", "--container", "c"});
    EXPECT_EQ(session.out, "The container c was removed.\n");
    session.run({"--docker", "start", "--json"});
    EXPECT_EQ(session.json().at("result").at("container"), "kelp_hub");
    session.run({"--wsl", "start"});
    EXPECT_EQ(session.out, "WSL needs no container; nothing was done.\n");
    session.run({"--wsl", "stop", "--json"});
    EXPECT_TRUE(session.json().at("result").at("container").is_null());
}

TEST(Commands, ContainerThatDoesNotStartIsAFailure)
{
    fakeLvm().duringStart = [] { return false; };
    Session session;
    EXPECT_EQ(session.run({"--docker", "start"}), 1);
    EXPECT_THAT(session.error,
                HasSubstr("The container kelp_hub could not be started.\nerror: CONTAINER_NOT_STARTED\nnext step: "));
}

TEST(Commands, ContainerThatDoesNotStopIsAFailure)
{
    fakeLvm().duringStop = [] { return false; };
    Session session;
    EXPECT_EQ(session.run({"--docker", "stop", "--container", "c"}), 1);
    EXPECT_THAT(session.error,
                HasSubstr("The container c could not be stopped.\nerror: CONTAINER_NOT_STOPPED\nnext step: "));
}

TEST(Commands, PrefixPrintsTheLine)
{
    Session session;
    EXPECT_EQ(session.run({"prefix"}), 0);
    EXPECT_EQ(session.out, "/windows/wsl.exe -d kelp_hub --exec \n");
    session.run({"prefix", "--docker", "--container", "c", "--json"});
    EXPECT_EQ(session.json().at("result"), "/usr/bin/docker exec c");
}

TEST(Commands, PrefixPrintsTheVector)
{
    Session session;
    EXPECT_EQ(session.run({"prefix", "--vector"}), 0);
    EXPECT_EQ(session.out, "/windows/wsl.exe\n-d\nkelp_hub\n--exec\n");
    session.run({"prefix", "--docker", "--vector", "--json"});
    EXPECT_EQ(session.json().at("result"), (json::array{"/usr/bin/docker", "exec", "kelp_hub"}));
}

TEST(Commands, EnvPrintsArgumentsAndEnvironment)
{
    Session session;
    EXPECT_EQ(session.run({"env", "-e", "A=1", "--", "x", ""}), 0);
    EXPECT_EQ(session.out, "argument: x\nargument: \nenvironment: A=1\nenvironment: LD_LIBRARY_PATH=/runtime\n"
                           "environment: WSLENV=A:LD_LIBRARY_PATH\n");
    session.run({"env", "--docker", "-e", "A=1", "--json", "--", "x", "y"});
    EXPECT_EQ(session.json().at("result"),
              json::parse(R"({"arguments": ["x", "-e", "A=1", "-e", "LD_LIBRARY_PATH=/runtime", "y"],
                              "environment": {"A": "1", "LD_LIBRARY_PATH": "/runtime"}})"));
}

TEST(Commands, VersionIsTheLibrarys)
{
    Session session;
    EXPECT_EQ(session.run({"--version"}), 0);
    EXPECT_EQ(session.out, "kelpctl 1.2.3.4 (Nov 21 2026)\n");
    session.run({"--version", "--json"});
    EXPECT_EQ(session.json().at("result").at("version"), "1.2.3.4");
}

TEST(Commands, FlagsBecomeTheHostsConfiguration)
{
    Session session;
    session.run({"prefix", "--root", "/host", "--release", "24a", "--language", "de", "--log", "detail"});
    const foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    EXPECT_EQ(configuration.installationRoot(), "/host");
    EXPECT_EQ(configuration.release(), "24a");
    EXPECT_EQ(configuration.language(), "de");
    EXPECT_EQ(configuration.channelMasks().at("orb"), 520U);
}

TEST(Commands, ConfigurationStaysWithoutFlags)
{
    foundation::core::config::Configuration before;
    before.setRelease("from the program");
    foundation::core::config::configure(before);
    Session session;
    session.run({"prefix"});
    EXPECT_EQ(foundation::core::config::configuration().release(), "from the program");
}

TEST(Commands, ArchiveNameThatIsNotUtf8IsRefused)
{
    Session session;
    EXPECT_EQ(session.run({"setup", "\xFF.tar"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: TEXT_NOT_VALID\n"));
    EXPECT_TRUE(fakeLvm().calls.empty());
}

std::string textOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class EachCommand : public testing::Test {
protected:
    const std::filesystem::path docs = DOCS_FOLDER;
    const std::filesystem::path golden = GOLDEN_FOLDER;
};

using Flags = std::set<std::string>;

Flags flagsOf(std::span<const kelpctl::Option> options)
{
    Flags flags;
    for (const kelpctl::Option& option : options) {
        if (*option.name == '-') {
            flags.emplace(option.name);
        }
    }
    return flags;
}

Flags flagsIn(const std::string& text)
{
    const std::regex flag("[ `\\[](--?[a-z][a-z-]*)");
    Flags flags;
    for (std::sregex_iterator found(text.begin(), text.end(), flag), end; found != end; ++found) {
        flags.insert((*found)[1]);
    }
    return flags;
}

// The first column of the table with that header.
std::string columnOf(const std::string& page, const std::string& header)
{
    std::istringstream lines(page.substr(page.find(header)));
    std::string column;
    for (std::string line; std::getline(lines, line) && !line.empty();) {
        column += line.substr(0, line.find("` | ") + 1) + "\n";
    }
    return column;
}

// `help` stands above the table.
TEST_F(EachCommand, IsInThePagesTableWithItsFlagsAndNoOtherIs)
{
    const std::string column = columnOf(textOf(docs / "kelpctl.md"), "| command | does |");
    std::map<std::string, Flags> described = {{"help", {}}};
    const std::regex entry("`([a-z]+)([^`]*)`");
    for (std::sregex_iterator found(column.begin(), column.end(), entry), end; found != end; ++found) {
        described[(*found)[1]] = flagsIn((*found)[2]);
    }
    std::map<std::string, Flags> commands;
    for (const kelpctl::Command& command : kelpctl::allCommands()) {
        if (command.shown == kelpctl::Shown::listed) {
            commands[command.name] = flagsOf(command.options);
        }
    }
    EXPECT_EQ(described, commands);
}

TEST_F(EachCommand, TakesTheFlagsOfThePagesOtherTable)
{
    Flags flags = flagsOf(kelpctl::globalOptions());
    flags.erase("--version");
    EXPECT_EQ(flagsIn(columnOf(textOf(docs / "kelpctl.md"), "| flag | meaning |")), flags);
}

TEST_F(EachCommand, IsInTheSchemaAndNoOtherIs)
{
    const json::value schema = json::parse(textOf(docs / "kelpctl.schema.json"));
    std::vector<std::string> described;
    for (const json::value& name : schema.at("properties").at("command").at("enum").as_array()) {
        described.emplace_back(name.as_string());
    }
    std::vector<std::string> shaped;
    for (const json::value& rule : schema.at("allOf").as_array()) {
        const json::value& condition = rule.at("if").at("properties");
        if (condition.as_object().contains("command")) {
            shaped.emplace_back(condition.at("command").at("const").as_string());
        }
    }
    // None, when the command line means nothing.
    std::vector<std::string> names = {""};
    for (const kelpctl::Command& command : kelpctl::allCommands()) {
        names.emplace_back(command.name);
    }
    EXPECT_THAT(described, UnorderedElementsAreArray(names));
    EXPECT_THAT(shaped, UnorderedElementsAreArray(names)) << "the shape of the result";
}

TEST_F(EachCommand, HasASampleOfItsJson)
{
    const std::string samples = textOf(golden / "commands.jsonl") + textOf(golden / "doctor.jsonl");
    for (const kelpctl::Command& command : kelpctl::allCommands()) {
        EXPECT_THAT(samples, HasSubstr("{\"command\":\"" + std::string(command.name) + "\",\"ok\":true,"));
    }
}

TEST_F(EachCommand, HasANameOfItsOwn)
{
    for (const kelpctl::Command& command : kelpctl::allCommands()) {
        EXPECT_EQ(kelpctl::findCommand(command.name), &command);
    }
    EXPECT_EQ(kelpctl::findCommand("nonsense"), nullptr);
}

} // namespace
