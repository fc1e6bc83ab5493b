// The disk of an import while it grows.
#include "wsl_test.h"

#include <chrono>
#include <future>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Le;

constexpr long long mib = 1 << 20;

} // namespace

class Disk : public WslTest {
protected:
    Disk() { environment["WSL_STAND_IN_DISK_BYTES"] = std::to_string(8 * mib); }

    // All sizes that are seen of the disk, -1 for none, until the import ends or the time is over.
    std::set<long long> sizesWhile(const std::string& mode, int importMs, std::chrono::seconds time = 60s)
    {
        environment["WSL_STAND_IN_MODE"] = mode;
        environment["WSL_STAND_IN_IMPORT_MS"] = std::to_string(importMs);
        const std::string limit = std::to_string(time.count());
        std::future<void> import = std::async(std::launch::async, [&] {
            const std::vector<std::string> arguments = {
                limit, WSL_PROGRAM, "--import", "Hub", folderOf("Hub").string(), HUB_ROOTFS, "--version", "2"};
            outcome = runProgram({"/usr/bin/timeout", arguments, environment, "", folder.path()});
        });
        std::set<long long> sizes;
        while (import.wait_for(1ms) != std::future_status::ready) {
            std::error_code error;
            const auto size = fs::file_size(folderOf("Hub") / "ext4.vhdx", error);
            sizes.insert(error ? -1 : static_cast<long long>(size));
        }
        return sizes;
    }

    Outcome outcome;
};

TEST_F(Disk, GrowsInStepsOfOneMebibyteOverTheTimeOfTheImport)
{
    const std::set<long long> sizes = sizesWhile("", 1600);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(sizes, Contains(8 * mib));
    EXPECT_GT(sizes.size(), 4U) << "it was seen on its way";
    for (const long long size : sizes) {
        EXPECT_TRUE(size == -1 || size % mib == 0) << size;
    }
}

TEST_F(Disk, TakesTheRoomThatItSays)
{
    sizesWhile("", 0);
    shell("du -B1 '" + (folderOf("Hub") / "ext4.vhdx").string() + "' >'" + (folder.path() / "used").string() + "'");
    EXPECT_GE(std::stoll(readFile(folder.path() / "used")), 8 * mib);
}

TEST_F(Disk, StallsWhereItIsTold)
{
    EXPECT_THAT(sizesWhile("stall=25@import", 0, 2s), Each(Le(2 * mib)));
    EXPECT_EQ(outcome.status, 124);
    EXPECT_EQ(fs::file_size(folderOf("Hub") / "ext4.vhdx"), 2 * mib);
}

TEST_F(Disk, StallsHalfwayAndWithoutASizeAtOnce)
{
    sizesWhile("stall", 0, 1s);
    EXPECT_EQ(fs::file_size(folderOf("Hub") / "ext4.vhdx"), 4 * mib);
    EXPECT_EQ(wsl({"--unregister", "Hub"}).status, 0);
    environment["WSL_STAND_IN_DISK_BYTES"] = "0";
    sizesWhile("stall", 0, 1s);
    EXPECT_EQ(outcome.status, 124);
}

TEST_F(Disk, ComesLate)
{
    const auto begin = std::chrono::steady_clock::now();
    const std::set<long long> sizes = sizesWhile("late-disk@import", 2000);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_THAT(sizes, Contains(-1));
    EXPECT_THAT(sizes, Contains(8 * mib));
}

TEST_F(Disk, ComesInABurst)
{
    const std::set<long long> sizes = sizesWhile("burst@import", 500);
    EXPECT_EQ(outcome.status, 0);
    for (const long long size : sizes) {
        EXPECT_TRUE(size == -1 || size == 0 || size == 8 * mib) << size;
    }
    EXPECT_THAT(sizes, Contains(0));
}

TEST_F(Disk, WithoutRoomFailsTheImportAndLeavesNothing)
{
    const std::set<long long> sizes = sizesWhile("no-space@import", 0);
    EXPECT_THAT(sizes, Each(Le(4 * mib)));
    EXPECT_THAT(outcome.errors, HasSubstr("No space left on device"));
    EXPECT_THAT(outcome.output, HasSubstr("Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"));
    EXPECT_EQ(list({"-q", "--all"}), "");
    EXPECT_FALSE(fs::exists(folderOf("Hub")));
}
