// What the commands print for programs, byte for byte: other people's programs read it.
#include "archive/made_archives.h"
#include "current_folder.h"
#include "fake_lvm.h"
#include "golden.h"
#include "session.h"
#include "temporary_folder.h"

#include "host/exceptions.h"
#include "orb/lvm.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

const std::filesystem::path goldenFile = std::filesystem::path(GOLDEN_FOLDER) / "commands.jsonl";

// What several runs print, one line each.
class Printed {
public:
    void run(std::vector<std::string> arguments, int status = 0, const char* backend = "--wsl")
    {
        arguments.insert(arguments.begin(), {"--json", backend});
        EXPECT_EQ(session.run(arguments), status) << session.out;
        EXPECT_EQ(session.error, "");
        text += session.out;
    }

    void runOnDocker(const std::vector<std::string>& arguments, int status = 0) { run(arguments, status, "--docker"); }

    Session session;
    std::string text;
};

void throwLoadError()
{
    using namespace orb::container_support;
    throw foundation::core::except::Exception<TAR_FILE_LOAD_ERROR, std::exception, void>(
        {catalogue,
         TAR_FILE_LOAD_ERROR::identifier,
         {std::string("C:\\a \"b\"\\grüße.tar"), std::string("hub"), std::string("no\tspace\r\n\x1b[0m")}});
}

void loadArchive()
{
    ranProgram({"docker.exe", "load", "-i", "a b.tar"}, {0, "Loaded image: hub\n", {}});
}

void failToRemove()
{
    ranProgram({"wsl.exe", "--unregister", "kelp_hub_R1"},
               {-1, "Für \"nichts\"\\.\r\n\x01\x08\x0c\x7f/\nWsl/Service/WSL_E_DISTRO_NOT_FOUND\r\n", "\xff\xe2\x82"});
}

void printProvisioning(Printed& printed)
{
    printed.run({"setup"});
    fakeLvm().duringImport = loadArchive;
    printed.runOnDocker({"provision", "--name", "mine"});
    fakeLvm().duringImport = throwLoadError;
    printed.runOnDocker({"setup", "x.tar"}, 1);
    fakeLvm().duringImport = [] {};
}

void printArchive(Printed& printed)
{
    printed.runOnDocker({"archive", "no such file.tar"}, 1);
    const TemporaryFolder folder;
    const CurrentFolder current(folder.path());
    std::ofstream("image.tar", std::ios::binary) << savedImage().finished();
    printed.runOnDocker({"archive", "image.tar"});
}

void printRemoval(Printed& printed)
{
    printed.run({"teardown"});
    printed.run({"remove", "漢字"});
    fakeLvm().duringClear = failToRemove;
    printed.run({"remove"}, 1);
    fakeLvm().duringClear = [] {};
}

void printCheck(Printed& printed)
{
    printed.run({"check"});
    fakeLvm().checkResult = -3;
    printed.run({"check"}, 1);
}

void printContainer(Printed& printed)
{
    printed.run({"start"});
    printed.runOnDocker({"start", "--container", "c"});
    fakeLvm().duringStart = [] { return false; };
    printed.runOnDocker({"start"}, 1);
    printed.runOnDocker({"stop"});
}

void printExec(Printed& printed)
{
    printed.session.answers["/windows/wsl.exe -d kelp_hub --exec ls"] = {3, "out\n\tof \xc3\xa9\xc3", "err\r\n"};
    printed.session.answers["/usr/bin/docker exec -i -e LD_LIBRARY_PATH=/runtime kelp_hub ls"] = {125, {}, "refused\n"};
    printed.run({"exec", "--", "ls"}, 3);
    printed.runOnDocker({"exec", "--", "ls"}, 125);
}

void printPreparation(Printed& printed)
{
    printed.run({"prefix"});
    printed.runOnDocker({"prefix", "--vector"});
    printed.run({"env"});
    printed.runOnDocker({"env", "-e", "A=1", "-e", "B=x=\"y\"", "--", "x", "", "\\"});
}

void printHelp(Printed& printed)
{
    printed.run({"completion", "bash"});
    printed.run({"completion", "powershell"});
    printed.run({"complete", "--", "st"});
    printed.run({"complete", "--", "nothing begins like this"});
    printed.run({"help", "exec"});
    printed.run({"--help"});
    printed.run({"--version"});
}

void printReport(Printed& printed)
{
    const TemporaryFolder folder;
    const CurrentFolder current(folder.path());
    printed.run({"report", "report.zip"});
    // What is there already is not written over.
    printed.run({"report", "report.zip"}, 1);
}

void printWrongUsage(Printed& printed)
{
    printed.run({}, 2);
    printed.run({"stup"}, 2);
    printed.run({"remove", "a", "b"}, 2);
}

TEST(JsonSamples, CommandsPrintTheStoredBytes)
{
    Printed printed;
    for (const auto& print : {printProvisioning, printArchive, printRemoval, printCheck, printContainer, printExec,
                              printPreparation, printHelp, printReport, printWrongUsage}) {
        print(printed);
    }
    expectGolden(goldenFile, printed.text);
}

// What env prints of one argument: the text between the quotation marks.
std::string printedArgument(const std::string& argument)
{
    const std::string front = R"({"command":"env","ok":true,"result":{"arguments":[")";
    const std::string back =
        R"("],"environment":{"LD_LIBRARY_PATH":"/runtime","WSLENV":"LD_LIBRARY_PATH"}},"error":null})"
        "\n";
    Session session;
    EXPECT_EQ(session.run({"env", "--json", "--", argument}), 0);
    if (!session.out.starts_with(front) || !session.out.ends_with(back)) {
        return "something else: " + session.out;
    }
    return session.out.substr(front.size(), session.out.size() - front.size() - back.size());
}

TEST(JsonSamples, EscapesAreTheShortOnesAndLowerCase)
{
    EXPECT_EQ(printedArgument("\"\\/\b\f\n\r\t"), R"(\"\\/\b\f\n\r\t)");
    EXPECT_EQ(printedArgument(std::string("\0\x01\x0b\x0e\x1b\x1f", 6)), R"(\u0000\u0001\u000b\u000e\u001b\u001f)");
    EXPECT_EQ(printedArgument(" ~\x7f"), " ~\x7f");
    EXPECT_EQ(printedArgument("\xc2\x80é漢\U0001F600\U0010FFFF\xef\xbb\xbf"),
              "\xc2\x80é漢\U0001F600\U0010FFFF\xef\xbb\xbf");
}

struct Broken {
    const char* bytes;
    // "?" stands for U+FFFD.
    const char* printed;
};

// As the Unicode standard recommends: one U+FFFD for the longest beginning of a sequence that could have become
// well-formed, one for each byte that begins none.
constexpr Broken brokenTexts[] = {
    {"\xff", "?"},
    {"\x80", "?"},
    {"\xbf\x80", "??"},
    {"a\xff\xfe"
     "b",
     "a??b"},
    {"\xc0\x80", "??"},
    {"\xc1\xbf", "??"},
    {"\xc3", "?"},
    {"\xc3\xc3", "??"},
    {"\xc3(", "?("},
    {"\xc3\"", "?\\\""},
    {"\xc3\n", "?\\n"},
    {"\xc3\xc3\xa9", "?é"},
    {"\xe2\x82", "?"},
    {"\xe2\x82z", "?z"},
    {"\xe2\x28\xa1", "?(?"},
    {"\xe2\x82\xe2\x82\xac", "?€"},
    {"\xe2", "?"},
    {"\xe0\x80\x80", "???"},
    {"\xe0\x9f\xbf", "???"},
    {"\xe0\xa0", "?"},
    {"\xed\x9f\xbf", "\xed\x9f\xbf"},
    {"\xed\xa0\x80", "???"},
    {"\xed\xa0\x80\xed\xb0\x80", "??????"},
    {"\xee\x80\x80", "\xee\x80\x80"},
    {"\xf0\x9f\x98", "?"},
    {"\xf0\x9f\x98 ", "? "},
    {"\xf0\x9f\x98\xf0\x9f\x98\x80", "?😀"},
    {"\xf0\x80\x80\x80", "????"},
    {"\xf0\x8f\xbf\xbf", "????"},
    {"\xf0\x90\x80\x80", "\xf0\x90\x80\x80"},
    {"\xf1\x80", "?"},
    {"\xf1\x80\x80\xff", "??"},
    {"\xf4\x8f\xbf\xbf", "\xf4\x8f\xbf\xbf"},
    {"\xf4\x90\x80\x80", "????"},
    {"\xf5\x80\x80\x80", "????"},
    {"\xf8\x88\x80\x80\x80", "?????"},
    {"\x61\xf1\x80\x80\xe1\x80\xc2\x62\x80\x63\x80\xbf\x64", "a???b?c??d"},
};

TEST(JsonSamples, BrokenTextHasReplacementCharacters)
{
    for (const Broken& broken : brokenTexts) {
        std::string expected;
        for (const char character : std::string(broken.printed)) {
            expected += character == '?' ? "\xef\xbf\xbd" : std::string(1, character);
        }
        EXPECT_EQ(printedArgument(broken.bytes), expected) << broken.printed;
    }
}

} // namespace
