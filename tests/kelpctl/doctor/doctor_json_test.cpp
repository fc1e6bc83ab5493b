#include "doctor/doctor.h"

#include "examinations.h"
#include "failure/output.h"
#include "golden.h"

#include <boost/json/value.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using kelpctl::Examination;
using kelpctl::judge;
using kelpctl::Names;
namespace json = boost::json;

json::object object(const Examination& found)
{
    return describe(found, judge(found), Names{"kelpctl", found.image, found.container, {}}, false).object;
}

TEST(DoctorJson, HoldsWhatTheTableShows)
{
    const json::object result = object(goodDocker());
    EXPECT_EQ(result.at("verdict"), "exists");
    EXPECT_EQ(result.at("backend"), (json::object{{"name", "docker"}, {"source", "flag"}, {"value", "--docker"}}));
    EXPECT_EQ(result.at("release"), (json::object{{"value", "r1"}, {"source", "variable"}}));
    EXPECT_EQ(result.at("docker").at("engine").at("version"), "27.5.1");
    EXPECT_EQ(result.at("docker").at("images").as_array().size(), 1U);
    EXPECT_EQ(result.at("docker").at("containers").at(0).at("state"), "running");
    EXPECT_EQ(result.at("docker").at("candidates").at(0).at("reason"), "regularFile");
    EXPECT_EQ(result.at("archives").at("files").at(2).at("kind"), "gzip");
    EXPECT_EQ(result.at("archives").at("files").at(2).at("taken"), true);
    EXPECT_EQ(result.at("archives").at("files").at(3).at("size"), nullptr);
    EXPECT_EQ(result.at("findings").at(0).at("identifier"), "ENVIRONMENT_READY");
}

TEST(DoctorJson, TellsNothingFromNotKnown)
{
    Examination found = goodDocker();
    EXPECT_EQ(object(found).at("wsl").at("distributions"), nullptr) << "the listing has failed";
    found.docker.images.clear();
    EXPECT_EQ(object(found).at("docker").at("images"), json::array());
    found.docker.imageListing = failed({"docker", "images"}, 1, "");
    EXPECT_EQ(object(found).at("docker").at("images"), nullptr);
}

TEST(DoctorJson, ListsAllOthers)
{
    Examination found = goodDocker();
    for (int number = 0; number < 100; ++number) {
        found.docker.images.push_back({"other" + std::to_string(number), "latest", "id", "1MB"});
    }
    EXPECT_EQ(object(found).at("docker").at("images").as_array().size(), 101U);
}

TEST(DoctorJson, FindingSaysHowBadWhereWhatAndWhatToDo)
{
    Examination found = goodDocker();
    found.docker.engine.answer = timedOut({"C:\\Docker\\docker.exe", "version"});
    const json::value finding = object(found).at("findings").at(0);
    EXPECT_EQ(finding.at("severity"), "problem");
    EXPECT_EQ(finding.at("identifier"), "TOOL_HANGS");
    EXPECT_EQ(finding.at("about"), "engine");
    EXPECT_EQ(finding.at("subject"), "docker.exe");
    EXPECT_EQ(finding.at("message"), "docker.exe does not answer.");
    EXPECT_FALSE(finding.at("next").as_string().empty());
    EXPECT_EQ(object(found).at("docker").at("engine").at("reply").at("ending"), "timedOut");
}

void print(std::ostringstream& stream, const Examination& found)
{
    kelpctl::Console console{stream, stream};
    kelpctl::writeJson(console, "doctor", {{}, object(found), {}});
}

// Other people's programs read it.
TEST(DoctorJson, ComputersPrintTheStoredBytes)
{
    std::ostringstream printed;
    print(printed, {});
    print(printed, goodWsl());
    print(printed, goodDocker());
    Examination found = goodDocker();
    found.docker.candidates[0].answer = failed({"C:\\Docker\\docker.exe"}, -1, "\xff");
    found.docker.engine.answer = timedOut({"docker.exe", "\"version\"", "\xc3"});
    found.docker.searchFailure = "grüße\r\n";
    found.docker.engine.product = kelpctl::DockerProduct::desktop;
    found.docker.engine.platform = "Docker Desktop 4.34.2 (167172)";
    found.docker.settings = {kelpctl::EngineChoice::contextVariable, "desktop-linux", {}};
    found.docker.endpoint = "npipe:////./pipe/dockerDesktopLinuxEngine";
    found.docker.missingHelpers = {"docker-credential-desktop"};
    found.adapter = {"172.17.0.1", "vEthernet (WSL)", {"Wi-Fi", ""}, {}};
    found.archives[0].size = std::numeric_limits<std::uint64_t>::max();
    found.temporary = {"C:\\Temp", true, false, std::nullopt};
    print(printed, found);
    found = goodWsl();
    found.wsl.listing = failed({"wsl.exe", "-l", "-q"}, 255, std::string(5000, 'x'));
    found.wsl.distributions = {{"other", "", 0, false}};
    found.account = kelpctl::Account{"PC\\anna", true, false, 1};
    found.wsl.policies = std::vector<kelpctl::Policy>{{"AllowWSL", 0}, {"AllowWSL1", 1}};
    found.wsl.config = kelpctl::WslConfigFile{"C:\\Users\\anna\\.wslconfig", true, {"C:\\k", "mirrored"}, false};
    found.wsl.otherAccounts = std::vector<std::string>{"PC\\bert"};
    print(printed, found);
    expectGolden(std::filesystem::path(GOLDEN_FOLDER) / "doctor.jsonl", printed.str());
}

} // namespace
