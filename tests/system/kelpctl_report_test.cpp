// The report for support, when what it asks does not answer.
#include "machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using orb::process::detail::RunResult;
using testing::HasSubstr;

class SupportReportOfAMachine : public testing::Test {
protected:
    RunResult kelpctl(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {KELPCTL_PROGRAM, "--wsl", "--root", utf8(tree.root()), "--release", "R1"});
        return orb::process::detail::run(arguments);
    }

    std::string report() const
    {
        const std::filesystem::path file = folder.path() / "report.zip";
        const RunResult result = kelpctl({"report", utf8(file)});
        EXPECT_EQ(result.status, 0) << result.standardError;
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    InstallTree tree{"R1"};
    Wsl wsl;
    TemporaryFolder folder;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
    EnvironmentVariable linuxState{"XDG_STATE_HOME", utf8(folder.path())};
    EnvironmentVariable windowsState{"LOCALAPPDATA", utf8(folder.path())};
};

TEST_F(SupportReportOfAMachine, IsMadeWhenWslHangs)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang@list");
    const auto begin = std::chrono::steady_clock::now();
    const std::string zip = report();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 60s);
    EXPECT_THAT(zip, HasSubstr("\"ending\":\"timedOut\""));
    EXPECT_THAT(zip, HasSubstr("programs/wsl-version.stdout"));
}

TEST_F(SupportReportOfAMachine, HasTheLastFailureWithItsStreamsAsBytes)
{
    EXPECT_THAT(report(),
                HasSubstr("last-failure.json: the last failure of a program that kelpctl told, null for none, 5 "));
    std::filesystem::remove(folder.path() / "report.zip");
    EXPECT_EQ(kelpctl({"setup", "missing.tar.gz"}).status, 1);
    const std::string zip = report();
    EXPECT_THAT(zip, HasSubstr("\"identifier\":\"WSL_CANNOT_IMPORT_TAR_FILE\""));
    std::string wide;
    for (const char character : std::string("Wsl/ERROR_FILE_NOT_FOUND\r\n")) {
        wide += character;
        wide += '\0';
    }
    EXPECT_NE(zip.find(wide), std::string::npos) << "UTF-16, as wsl.exe printed it";
}

} // namespace
