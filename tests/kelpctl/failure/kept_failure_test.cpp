#include "failure/kept_failure.h"

#include "state_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>

namespace {

using kelpctl::keepFailure;
using kelpctl::keptFailure;
using kelpctl::maskedDockerArguments;
using kelpctl::Report;
using kelpctl::Request;
using kelpctl::Run;

Request request(const std::string& command)
{
    Request made;
    made.command = command;
    made.environment = {{"PASSWORD", "tr0ub4dor"}};
    return made;
}

Report failed(const std::string& output, const std::string& error)
{
    Report report;
    report.identifier = "CONTAINER_NOT_STARTED";
    report.text = "The container could not be started.";
    Run run;
    run.arguments = {"docker.exe", "run", "--label", "aux-s3cret", "hub"};
    run.status = 125;
    run.captured = output;
    run.capturedError = error;
    report.evidence = run;
    return report;
}

class KeptFailure : public testing::Test {
protected:
    StateFolder state;
    EnvironmentVariable arguments{"AUX_DOCKER_ARGS", "--label aux-s3cret"};
};

TEST_F(KeptFailure, IsThereAgainWithBothStreamsAsBytes)
{
    EXPECT_FALSE(keptFailure());
    const std::string bytes("\xff\0a\r\n", 5);
    keepFailure(request("start"), failed(bytes, "error\n"));
    ASSERT_TRUE(keptFailure());
    EXPECT_EQ(keptFailure()->output, bytes);
    EXPECT_EQ(keptFailure()->error, "error\n");
    EXPECT_EQ(keptFailure()->told.at("command"), "start");
    EXPECT_EQ(keptFailure()->told.at("identifier"), "CONTAINER_NOT_STARTED");
    EXPECT_EQ(keptFailure()->told.at("status"), 125);
}

TEST_F(KeptFailure, IsTheLastOne)
{
    keepFailure(request("start"), failed("one", ""));
    keepFailure(request("start"), failed("two", ""));
    EXPECT_EQ(keptFailure()->output, "two");
}

TEST_F(KeptFailure, HoldsNoSecretEvenInItsFile)
{
    keepFailure(request("start"), failed("tr0ub4dor and aux-s3cret", "tr0ub4dor"));
    EXPECT_EQ(keptFailure()->output, "*** and ***");
    EXPECT_EQ(keptFailure()->told.at("arguments").at(3), "***");
    std::ifstream file(state.path() / "kelpctl" / "last-failure", std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(content.find("docker.exe"), std::string::npos);
    EXPECT_EQ(content.find("tr0ub4dor"), std::string::npos);
    EXPECT_EQ(content.find("aux-s3cret"), std::string::npos);
}

TEST_F(KeptFailure, IsNoneOfAProgramInsideNorOneWithoutAProgram)
{
    keepFailure(request("exec"), failed("one", ""));
    Report report = failed("one", "");
    report.evidence.reset();
    keepFailure(request("setup"), report);
    EXPECT_FALSE(keptFailure());
}

TEST_F(KeptFailure, IsNotReplacedByAnInterruption)
{
    keepFailure(request("setup"), failed("one", ""));
    Report report = failed("two", "");
    report.identifier = "INTERRUPTED";
    keepFailure(request("setup"), report);
    EXPECT_EQ(keptFailure()->output, "one");
}

TEST_F(KeptFailure, ThatCannotBeKeptIsNoFurtherFailure)
{
    std::ofstream(state.path() / "kelpctl") << "a file in the folder's place";
    keepFailure(request("start"), failed("one", ""));
    EXPECT_FALSE(keptFailure());
}

TEST_F(KeptFailure, ThatIsDamagedIsNone)
{
    std::filesystem::create_directory(state.path() / "kelpctl");
    for (const char* content : {"", "no JSON\n", "{}\n", "{\"outputBytes\": \"x\"}\n", "[1]\n"}) {
        std::ofstream(state.path() / "kelpctl" / "last-failure", std::ios::binary) << content;
        EXPECT_FALSE(keptFailure()) << content;
    }
    std::ofstream(state.path() / "kelpctl" / "last-failure", std::ios::binary) << "{\"outputBytes\": 100}\nshort";
    EXPECT_EQ(keptFailure()->output, "short");
    std::ofstream(state.path() / "kelpctl" / "last-failure", std::ios::binary) << "{\"outputBytes\": -1}\nshort";
    EXPECT_EQ(keptFailure()->output, "short");
}

TEST(DockerArguments, KeepTheNamesOfTheirOptionsOnly)
{
    EXPECT_EQ(maskedDockerArguments("-e TOKEN=x --label a=b --rm secret --env=Q"),
              "-e TOKEN=*** --label a=*** --rm *** --env=***");
    EXPECT_EQ(maskedDockerArguments(""), "");
    EXPECT_EQ(maskedDockerArguments("A="), "A=");
}

} // namespace
