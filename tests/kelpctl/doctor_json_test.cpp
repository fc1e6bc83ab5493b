#include "doctor_json.h"

#include "examinations.h"
#include "golden.h"
#include "output.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <limits>
#include <sstream>

namespace {

using kelpctl::doctorObject;
using kelpctl::Examination;
using kelpctl::judge;
using kelpctl::Names;
using nlohmann::ordered_json;

ordered_json object(const Examination& found)
{
    return doctorObject(found, judge(found), Names{"kelpctl", found.image, found.container, {}});
}

TEST(DoctorJson, HoldsWhatTheTableShows)
{
    const ordered_json result = object(goodDocker());
    EXPECT_EQ(result["verdict"], "exists");
    EXPECT_EQ(result["backend"], (ordered_json{{"name", "docker"}, {"source", "flag"}, {"value", "--docker"}}));
    EXPECT_EQ(result["release"], (ordered_json{{"value", "r1"}, {"source", "variable"}}));
    EXPECT_EQ(result["docker"]["engine"]["version"], "27.5.1");
    EXPECT_EQ(result["docker"]["images"].size(), 1U);
    EXPECT_EQ(result["docker"]["containers"][0]["state"], "running");
    EXPECT_EQ(result["docker"]["candidates"][0]["reason"], "regularFile");
    EXPECT_EQ(result["archives"]["files"][2]["kind"], "gzip");
    EXPECT_EQ(result["archives"]["files"][2]["taken"], true);
    EXPECT_EQ(result["archives"]["files"][3]["size"], nullptr);
    EXPECT_EQ(result["findings"][0]["identifier"], "ENVIRONMENT_READY");
}

TEST(DoctorJson, TellsNothingFromNotKnown)
{
    Examination found = goodDocker();
    EXPECT_EQ(object(found)["wsl"]["distributions"], nullptr) << "the listing has failed";
    found.docker.images.clear();
    EXPECT_EQ(object(found)["docker"]["images"], ordered_json::array());
    found.docker.imagesReply = failed({"docker", "images"}, 1, "");
    EXPECT_EQ(object(found)["docker"]["images"], nullptr);
}

TEST(DoctorJson, ListsAllOthers)
{
    Examination found = goodDocker();
    for (int number = 0; number < 100; ++number) {
        found.docker.images.push_back({"other" + std::to_string(number), "latest", "id", "1MB"});
    }
    EXPECT_EQ(object(found)["docker"]["images"].size(), 101U);
}

TEST(DoctorJson, FindingSaysHowBadWhereWhatAndWhatToDo)
{
    Examination found = goodDocker();
    found.docker.engineReply = timedOut({"C:\\Docker\\docker.exe", "version"});
    const ordered_json finding = object(found)["findings"][0];
    EXPECT_EQ(finding["severity"], "problem");
    EXPECT_EQ(finding["identifier"], "TOOL_HANGS");
    EXPECT_EQ(finding["about"], "engine");
    EXPECT_EQ(finding["subject"], "docker.exe");
    EXPECT_EQ(finding["message"], "docker.exe does not answer.");
    EXPECT_FALSE(finding["next"].get<std::string>().empty());
    EXPECT_EQ(object(found)["docker"]["engine"]["reply"]["ending"], "timedOut");
}

void print(std::ostringstream& stream, const Examination& found)
{
    kelpctl::Console console{stream, stream, false, false, false, false, {}, {}};
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
    found.docker.engineReply = timedOut({"docker.exe", "\"version\"", "\xc3"});
    found.docker.searchFailure = "grüße\r\n";
    found.adapter = {"172.17.0.1", "vEthernet (WSL)", {"Wi-Fi", ""}, {}};
    found.archives[0].size = std::numeric_limits<std::uint64_t>::max();
    found.temporary = {"C:\\Temp", true, false, std::nullopt};
    print(printed, found);
    found = goodWsl();
    found.wsl.listing = failed({"wsl.exe", "-l", "-q"}, 255, std::string(5000, 'x'));
    found.wsl.distributions = {{"other", "", 0, false}};
    print(printed, found);
    expectGolden(std::filesystem::path(GOLDEN_FOLDER) / "doctor.jsonl", printed.str());
}

} // namespace
