// The ways to misbehave.
#include "wsl_test.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

class Mode : public WslTest {
protected:
    void set(const std::string& mode) { environment["WSL_STAND_IN_MODE"] = mode; }
};

TEST_F(Mode, StatusFailsEveryCommandSilently)
{
    set("status=50");
    for (const char* option : {"-v", "-l", "--status"}) {
        const Outcome outcome = wsl({option});
        EXPECT_EQ(outcome.status, 50);
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
}

TEST_F(Mode, CanBeLimitedToAVerb)
{
    set("status=3@list,status=4@import,status=5@exec");
    EXPECT_EQ(wsl({"-v"}).status, 0);
    EXPECT_EQ(wsl({"-l", "-q"}).status, 3);
    EXPECT_EQ(wsl({"--import", "a", "b", "c"}).status, 4);
    EXPECT_EQ(wsl({"-d", "a", "--exec", "b"}).status, 5);
}

// As any failure is told: on standard output, UTF-16 with CR LF unless WSL_UTF8 is 1, status -1.
TEST_F(Mode, CodeFailsAnyVerbWithAnyPath)
{
    const std::string path = "Wsl/Service/CreateInstance/MountDisk/HCS/ERROR_FILE_NOT_FOUND";
    const std::string text = "The sentence that goes with the code. \nError code: " + path + "\n";
    const std::vector<std::pair<std::string, std::vector<std::string>>> verbs = {
        {"version", {"-v"}},
        {"list", {"-l", "-q"}},
        {"import", {"--import", "a", "b", "c"}},
        {"unregister", {"--unregister", "a"}},
        {"terminate", {"--terminate", "a"}},
        {"shutdown", {"--shutdown"}},
        {"status", {"--status"}},
        {"set-default", {"--set-default", "a"}},
        {"help", {"--help"}},
        {"exec", {"-d", "a", "--exec", "b"}},
    };
    for (const auto& [verb, arguments] : verbs) {
        set("code=" + path + "@" + verb);
        EXPECT_THAT(wsl(arguments), failsWith(text)) << verb;
    }
    set("code=" + path);
    EXPECT_THAT(wsl({"-l", "-q"}), failsWith(text)) << "without a verb it is for all";
    environment.erase("WSL_UTF8");
    EXPECT_EQ(wsl({"-l", "-q"}).output, utf16(lines(text)));
    set("code=" + path + "@import,code=Wsl/E_FAIL@list,localised");
    EXPECT_EQ(wsl({"-l", "-q"}).output,
              utf16(lines("The sentence that goes with the code. \nFehlercode: Wsl/E_FAIL\n")));
}

TEST_F(Mode, NothingSucceedsWithoutDoingAnything)
{
    set("nothing");
    EXPECT_THAT(importAs("Hub"), succeedsWith(""));
    set("");
    EXPECT_EQ(list({"-q", "--all"}), "");
}

TEST_F(Mode, GarbageIsNoTextInAnyEncoding)
{
    set("garbage");
    const Outcome outcome = wsl({"-l", "-q"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.size() % 2, 1U);
    EXPECT_EQ(outcome.output[0], '\xFF');
    EXPECT_NE(outcome.output.find('\0'), std::string::npos);
    EXPECT_EQ(outcome.errors, outcome.output);
}

TEST_F(Mode, BytesAreThoseOfAFile)
{
    const std::string bytes("\xff\xfe\0x\r\n", 6);
    writeFile(folder.path() / "bytes", bytes);
    set("bytes=" + (folder.path() / "bytes").string() + "@list");
    const Outcome outcome = wsl({"-l", "-q"});
    EXPECT_EQ(outcome.status, ownFailure);
    EXPECT_EQ(outcome.output, bytes);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Mode, FloodPrintsOneHundredMebibytes)
{
    set("flood");
    const Outcome outcome = wsl({"-l", "-q"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.size(), 100U << 20);
}

TEST_F(Mode, HangEndsOnlyWhenItIsKilled)
{
    set("hang@list");
    const Outcome outcome =
        runProgram({"/usr/bin/timeout", {"0.5", WSL_PROGRAM, "-l", "-q"}, environment, "", folder.path()});
    EXPECT_EQ(outcome.status, 124);
    EXPECT_EQ(wsl({"-v"}).status, 0);
}
