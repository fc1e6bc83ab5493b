// What kelpctl tells of an import that takes its time, that stands still, and that lies elsewhere.
#include "machine.h"
#include "progress_objects.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using orb::process::detail::RunResult;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::StartsWith;

constexpr std::uint64_t mib = 1 << 20;

class LongImport : public testing::Test {
protected:
    ~LongImport() override
    {
        wsl.run({"--unregister", "kelp_hub_R2027a"});
        wsl.clear();
    }

    RunResult setup(std::vector<std::string> options) const
    {
        const std::vector<std::string> front = {KELPCTL_PROGRAM, "--root", utf8(tree.root()), "--wsl",
                                                "--release",     "R2027a", "setup",           utf8(hubArchive())};
        options.insert(options.begin(), front.begin(), front.end());
        return orb::process::detail::run(options);
    }

    InstallTree tree;
    Wsl wsl;
    TemporaryFolder elsewhere;
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
    EnvironmentVariable disk{"WSL_STAND_IN_DISK_BYTES", std::to_string(12 * mib)};
    EnvironmentVariable time{"WSL_STAND_IN_IMPORT_MS", "5000"};
};

TEST_F(LongImport, TellsProgramsHowFarItIs)
{
    const RunResult result = setup({"--progress", "json"});
    EXPECT_EQ(result.status, 0) << result.standardError;
    const std::vector<boost::json::object> objects = progressObjects(result.standardError);
    EXPECT_GE(objects.size(), 3U);
    EXPECT_THAT(statesOf(objects), Contains("growing"));
    std::uint64_t before = 0;
    for (const boost::json::object& object : objects) {
        if (object.at("bytes").is_null()) {
            continue;
        }
        const auto bytes = object.at("bytes").to_number<std::uint64_t>();
        EXPECT_GE(bytes, before);
        EXPECT_LE(bytes, 12 * mib);
        EXPECT_GT(object.at("freeRoom").to_number<std::uint64_t>(), 0U);
        // The archive says less than the disk takes; that is no per cent then.
        const bool outgrown = bytes > object.at("of").to_number<std::uint64_t>();
        EXPECT_EQ(object.at("percent").is_null(), outgrown || bytes == 0) << boost::json::serialize(object);
        before = bytes;
    }
    EXPECT_GE(before, 6 * mib);
}

TEST_F(LongImport, SaysNothingElsewhereWhileAllGoesWell)
{
    const RunResult result = setup({});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardError, "");
}

TEST_F(LongImport, ThatStandsStillIsEndedWhenTheUserWantsIt)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "stall@import");
    const EnvironmentVariable atOnce("WSL_STAND_IN_IMPORT_MS", "0");
    const auto begin = std::chrono::steady_clock::now();
    const RunResult result = setup({"--stall-limit", "3", "--end-when-stalled"});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 60s);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.standardError,
                StartsWith("kelpctl setup: Nothing has come to the disk of kelp_hub_R2027a for "));
    EXPECT_THAT(result.standardError, HasSubstr("error: WORK_STALLED"));
    EXPECT_THAT(result.standardError, HasSubstr("cause: WSL may still be importing kelp_hub_R2027a into "));
    EXPECT_THAT(result.standardError, HasSubstr("--import kelp_hub_R2027a "));
    EXPECT_THAT(wsl.distributions(), IsEmpty());
}

TEST_F(LongImport, ThatStandsStillForAWhileOnlySaysSo)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "burst@import");
    const RunResult result = setup({"--stall-limit", "2"});
    EXPECT_EQ(result.status, 0) << result.standardError;
    EXPECT_THAT(result.standardError, HasSubstr("the import may be stuck"));
    EXPECT_THAT(wsl.distributions(), ElementsAre("kelp_hub_R2027a"));
}

TEST_F(LongImport, IsPreparedUntilItsDiskComes)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "late-disk@import");
    const EnvironmentVariable longer("WSL_STAND_IN_IMPORT_MS", "8000");
    const RunResult result = setup({"--progress", "json"});
    EXPECT_EQ(result.status, 0);
    const std::vector<boost::json::object> objects = progressObjects(result.standardError);
    EXPECT_THAT(statesOf(objects), Contains("preparing"));
    EXPECT_THAT(statesOf(objects), Contains("growing"));
}

TEST_F(LongImport, ThatFindsNoRoomFailsAsWslSaysIt)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "no-space@import");
    const RunResult result = setup({"--progress", "json", "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.standardOutput, HasSubstr("No space left on device"));
    EXPECT_THAT(statesOf(progressObjects(result.standardError)),
                IsSubsetOf({"running", "preparing", "growing", "finishing"}));
}

TEST_F(LongImport, LiesWhereTheUserWantsIt)
{
    const EnvironmentVariable atOnce("WSL_STAND_IN_IMPORT_MS", "0");
    const RunResult result = setup({"--location", utf8(elsewhere.path())});
    EXPECT_EQ(result.status, 0) << result.standardError;
    EXPECT_TRUE(temporaryDirectoryIsClean(temporary.path()));
    const std::filesystem::directory_iterator folder(elsewhere.path());
    EXPECT_EQ(std::filesystem::file_size(folder->path() / "ext4.vhdx"), 12 * mib);
    EXPECT_EQ(folder->path().filename().string().size(), 32U);
    wsl.clear();
}

} // namespace
