// The bridge, which backs a Windows program under Wine by a Linux one. Here docker.exe is backed by tests/probe, and
// wsl.exe by the wsl stand-in.
#include "run_program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

namespace fs = std::filesystem;

using testing::HasSubstr;

namespace {

constexpr long long minusOne = 4294967295;

std::string utf16(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        result += c;
        result += '\0';
    }
    return result;
}

// The Unix path of an absolute one on Wine's drive Z, which is the root.
std::string unixPath(const fs::path& path)
{
    std::string text = path.string().substr(2);
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

} // namespace

class Bridge : public testing::Test {
protected:
    Bridge()
    {
        fs::create_directory(work);
        environment["WINE_BRIDGE_DOCKER"] = PROBE;
        environment["WINE_BRIDGE_WSL"] = LINUX_WSL;
        environment["WSL_STAND_IN_STATE"] = "Z:" + unixPath(work) + "/state";
        environment["WSL_UTF8"] = "1";
    }

    ~Bridge() override
    {
        // Its root file system is full of links, which only Linux takes away as such.
        wsl({"--unregister", "Hub"});
        std::error_code ignored;
        fs::remove_all(work, ignored);
    }

    Outcome probe(const std::vector<std::string>& arguments, const std::string& input = {})
    {
        return runProgram({fs::path(DOCKER_PROGRAM).make_preferred(), arguments, environment, input, work});
    }

    Outcome wsl(const std::vector<std::string>& arguments, const std::string& input = {})
    {
        return runProgram({fs::path(WSL_PROGRAM).make_preferred(), arguments, environment, input, work});
    }

    Outcome import()
    {
        return wsl(
            {"--import", "Hub", (work / "a distribution").string(), std::string("Z:") + HUB_ROOTFS, "--version", "2"});
    }

    // On drive Z, so that its Unix path is known.
    fs::path work = fs::path("Z:\\tmp") / ("zqorb-bridge-" + std::to_string(std::random_device{}()));
    Environment environment;
};

TEST_F(Bridge, ArgumentsArriveOneByOne)
{
    EXPECT_EQ(probe({"arguments", "a b", "", "say \"hi\"", "back\\slash\\", "ü€"}).output,
              "[a b][][say \"hi\"][back\\slash\\][ü€]");
}

TEST_F(Bridge, AbsoluteWindowsPathsBecomeUnixPaths)
{
    const std::string file = (work / "some file.tar").string();
    const std::string expected = unixPath(work) + "/some file.tar";
    EXPECT_EQ(probe({"arguments", file, "--file=" + file, "x=" + file, "C:"}).output,
              "[" + expected + "][--file=" + expected + "][x=" + file + "][C:]");
}

TEST_F(Bridge, PathBelowAFolderThatIsMissingBecomesOneThatIsMissingToo)
{
    EXPECT_EQ(probe({"arguments", (work / "no" / "such" / "file").string()}).output,
              "[" + unixPath(work) + "/no/such/file]");
}

TEST_F(Bridge, WorkingFolderIsTheCallers)
{
    EXPECT_EQ(probe({"folder"}).output, unixPath(work) + "\n");
}

TEST_F(Bridge, VariablesOfTheCallerArrive)
{
    environment["GREETING"] = "good day ü";
    environment["DOCKER_HOST"] = "unix:///x";
    EXPECT_EQ(probe({"variable", "GREETING"}).output, "good day ü");
    EXPECT_EQ(probe({"variable", "DOCKER_HOST"}).output, "unix:///x");
}

TEST_F(Bridge, PathHomeAndTempStayUnixOnes)
{
    environment["PATH"] = "C:\\windows";
    environment["HOME"] = "C:\\home";
    environment["TEMP"] = "C:\\temp";
    EXPECT_THAT(probe({"variable", "PATH"}).output, HasSubstr("/usr/bin"));
    EXPECT_EQ(probe({"variable", "HOME"}).output.substr(0, 1), "/");
    EXPECT_EQ(probe({"variable", "TEMP"}).output.find('\\'), std::string::npos);
}

TEST_F(Bridge, BytesArriveUnchanged)
{
    EXPECT_EQ(probe({"bytes"}).output, std::string("\xFF\0\r\n\1", 5));
}

TEST_F(Bridge, BothStreamsAreCopiedAtOnce)
{
    const Outcome outcome = probe({"flood"});
    EXPECT_TRUE(outcome.output == std::string(1000000, 'o'));
    EXPECT_TRUE(outcome.errors == std::string(1000000, 'e'));
}

TEST_F(Bridge, OneMegabyteOfInputArrives)
{
    std::string bytes;
    for (int i = 0; i < 1000000; ++i) {
        bytes += static_cast<char>(i * 7 + i / 256);
    }
    EXPECT_TRUE(probe({"input"}, bytes).output == bytes);
}

TEST_F(Bridge, EmptyInputEndsAtOnce)
{
    EXPECT_EQ(probe({"input"}).status, 0);
}

TEST_F(Bridge, InputThatStaysOpenDoesNotHoldItUp)
{
    Call call{fs::path(DOCKER_PROGRAM).make_preferred(), {"status", "7"}, environment, "", work};
    call.inputStaysOpen = true;
    EXPECT_EQ(runProgram(call).status, 7);
}

TEST_F(Bridge, ProcessLeftBehindDoesNotHoldItUp)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(probe({"leave-behind"}).output, "done\n");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(Bridge, StatusesPassThrough)
{
    for (const int status : {0, 1, 125, 255}) {
        EXPECT_EQ(probe({"status", std::to_string(status)}).status, status);
    }
    EXPECT_EQ(probe({"signal"}).status, 128 + 9);
}

TEST_F(Bridge, TerminatedBridgeEndsItsLinuxProgram)
{
    Call call{fs::path(DOCKER_PROGRAM).make_preferred(), {"stay", (work / "pid").string()}, environment, "", work};
    call.terminateAfterMilliseconds = 3000;
    EXPECT_EQ(runProgram(call).status, Outcome::terminated);
    const std::string number = readFile(work / "pid");
    ASSERT_FALSE(number.empty());
    const fs::path process = "Z:\\proc\\" + number.substr(0, number.size() - 1);
    for (int i = 0; i < 100 && fs::exists(process); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_FALSE(fs::exists(process));
}

TEST_F(Bridge, MissingLinuxProgramIsSaid)
{
    environment["WINE_BRIDGE_DOCKER"] = "";
    const Outcome outcome = probe({"status", "0"});
    EXPECT_EQ(outcome.status, 127);
    EXPECT_THAT(outcome.errors, HasSubstr("WINE_BRIDGE_DOCKER"));
}

TEST_F(Bridge, OwnFailureOfWslIsMinusOneInAll32Bits)
{
    EXPECT_EQ(wsl({"--help"}).status, minusOne);
    const Outcome outcome = wsl({"--unregister", "Hub"});
    EXPECT_EQ(outcome.status, minusOne);
    EXPECT_EQ(outcome.output, "There is no distribution with the supplied name.\r\n"
                              "Error code: Wsl/Service/WSL_E_DISTRO_NOT_FOUND\r\n");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Bridge, Status255OfALinuxProgramIsNotMinusOne)
{
    ASSERT_EQ(import().status, 0);
    EXPECT_EQ(wsl({"-d", "Hub", "--exec", "sh", "-c", "exit 255"}).status, 255);
    EXPECT_EQ(wsl({"-d", "Hub", "--exec", "sh", "-c", "exit 67"}).status, minusOne);
}

TEST_F(Bridge, TextOfWslStaysUtf16)
{
    environment.erase("WSL_UTF8");
    EXPECT_EQ(import().output, utf16("The operation completed successfully. \r\n"));
    EXPECT_EQ(wsl({"-l", "-q"}).output, utf16("Hub\r\n"));
}

TEST_F(Bridge, ImportTakesWindowsPaths)
{
    const Outcome outcome = import();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_TRUE(fs::exists(work / "a distribution" / "ext4.vhdx"));
    EXPECT_EQ(wsl({"--unregister", "Hub"}).status, 0);
    EXPECT_FALSE(fs::exists(work / "a distribution"));
}

TEST_F(Bridge, ImportBelowAFolderThatIsMissingFails)
{
    const Outcome outcome = wsl({"--import", "Hub", (work / "no" / "folder").string(), "Z:" HUB_ROOTFS});
    EXPECT_EQ(outcome.status, minusOne);
    EXPECT_THAT(outcome.output, HasSubstr("Error code: Wsl/ERROR_PATH_NOT_FOUND\r\n"));
}

TEST_F(Bridge, VariablesListedInWslenvReachLinux)
{
    import();
    environment["GREETING"] = "hello world";
    environment["LD_LIBRARY_PATH"] = "/opt/vrun/korvane/lib";
    environment["PLACE"] = "C:\\a b";
    environment["WSLENV"] = "GREETING/u:LD_LIBRARY_PATH:PLACE/p";
    const std::string all = wsl({"-d", "Hub", "--exec", "env"}).output;
    EXPECT_THAT(all, HasSubstr("GREETING=hello world\n"));
    EXPECT_THAT(all, HasSubstr("LD_LIBRARY_PATH=/opt/vrun/korvane/lib\n"));
    EXPECT_THAT(all, HasSubstr("PLACE=/mnt/c/a b\n"));
}

TEST_F(Bridge, WslSeesTheRawCommandLine)
{
    import();
    Call call{fs::path(WSL_PROGRAM).make_preferred(), {}, environment, "", work};
    call.rawArguments = " -d \"Hub\" --exec true";
    EXPECT_EQ(runProgram(call).status, minusOne);
    call.rawArguments = " -d Hub --exec echo \"a  b\" c\\";
    EXPECT_EQ(runProgram(call).output, "a  b c\\\n");
}

TEST_F(Bridge, InputReachesAProgramInsideADistribution)
{
    import();
    const std::string bytes = "a\r\n\xFF" + std::string(200000, 'x');
    EXPECT_TRUE(wsl({"-d", "Hub", "--exec", "cat"}, bytes).output == bytes);
}
