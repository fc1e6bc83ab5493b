// What kelpctl tells of an archive that a real engine loads, with the engine stopped in between.
#include "docker_machine.h"
#include "machine.h"
#include "progress_objects.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace {

using orb::process::detail::run;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using orb::process::detail::Stream;
using testing::Contains;

// The engine of the tests, stopped and continued.
class Engine {
public:
    Engine() { std::ifstream(std::filesystem::path(DOCKER_ARCHIVES).parent_path() / "dockerd.pid") >> process_; }
    ~Engine() { proceed(); }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void stop() const { EXPECT_EQ(::kill(process_, SIGSTOP), 0); }
    void proceed() const { EXPECT_EQ(::kill(process_, SIGCONT), 0); }

private:
    pid_t process_ = 0;
};

// An image of so many MiB, saved by the engine.
std::filesystem::path savedImage(const DockerEngine& docker, const std::filesystem::path& folder, int mib)
{
    std::filesystem::create_directory(folder / "etc");
    std::mt19937_64 random(1);
    std::ofstream file(folder / "etc" / "random", std::ios::binary);
    std::string block(1 << 20, '\0');
    for (std::size_t index = 0; index < block.size(); index += 8) {
        const std::uint64_t number = random();
        block.replace(index, 8, reinterpret_cast<const char*>(&number), 8);
    }
    for (int written = 0; written < mib; ++written) {
        file << block;
    }
    file.close();
    const std::string rootFs = utf8(folder / "root.tar");
    EXPECT_EQ(run({"/bin/tar", "-cf", rootFs, "-C", utf8(folder), "etc"}).status, 0);
    EXPECT_EQ(docker.run({"import", rootFs, "kelp_hub_r2026b"}).status, 0);
    const std::filesystem::path archive = folder / "image.tar";
    EXPECT_EQ(docker.run({"save", "-o", utf8(archive), "kelp_hub_r2026b"}).status, 0);
    EXPECT_EQ(docker.run({"image", "rm", "--force", "kelp_hub_r2026b"}).status, 0);
    return archive;
}

// Whether a Docker client has read some of the file.
bool isBeingLoaded(const std::filesystem::path& file)
{
    namespace fs = std::filesystem;
    constexpr std::uint64_t some = 1 << 20;
    for (const fs::directory_entry& process : fs::directory_iterator("/proc")) {
        std::string name;
        std::ifstream(process.path() / "comm") >> name;
        const bool isClient = name.starts_with("docker") && name != "dockerd";
        std::error_code error;
        for (fs::directory_iterator entry(process.path() / "fd", error), end; isClient && !error && entry != end;
             entry.increment(error)) {
            std::error_code gone;
            std::string label;
            std::uint64_t position = 0;
            std::ifstream(process.path() / "fdinfo" / entry->path().filename()) >> label >> position;
            if (position > some && fs::equivalent(entry->path(), file, gone)) {
                return true;
            }
        }
    }
    return false;
}

class LongLoad : public testing::Test {
protected:
    // Stops the engine when the client has read something of the archive, and lets it go on when the stall has been told; also
    // when that does not come, because the engine was done already and another question waits for it.
    RunResult setupWithAPause(const std::filesystem::path& archive, const std::vector<std::string>& options)
    {
        std::vector<std::string> command = {KELPCTL_PROGRAM, "--docker", "--root", utf8(tree.root()),
                                            "--release",     "r2026b",   "setup",  utf8(archive)};
        command.insert(command.end(), options.begin(), options.end());
        RunOptions seen;
        constexpr int enough = 12;
        std::atomic<bool> over = false;
        std::atomic<bool> stopped = false;
        int since = 0;
        std::thread watcher([&] {
            while (!over && !stopped) {
                if (isBeingLoaded(archive)) {
                    engine.stop();
                    stopped = true;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
        seen.setOutputLogger([&](Stream stream, std::string_view text) {
            if (stream != Stream::error) {
                return;
            }
            since += stopped ? 1 : 0;
            if (text.find("\"stalled\"") != text.npos || since == enough) {
                engine.proceed();
            }
        });
        RunResult result = run(command, {}, {}, false, seen);
        over = true;
        watcher.join();
        return result;
    }

    InstallTree tree{"r2026b"};
    DockerEngine docker;
    TemporaryFolder folder;
    Engine engine;
};

// What the archive holds is known without the engine; only the room on its disk is not.
TEST_F(LongLoad, ArchiveIsLookedIntoThoughTheEngineHangs)
{
    engine.stop();
    const auto start = std::chrono::steady_clock::now();
    RunOptions limited;
    limited.setTerminationHandler(
        [start] { return std::chrono::steady_clock::now() - start > std::chrono::minutes(1); });
    const RunResult told = run({KELPCTL_PROGRAM, "--docker", "--release", "r2026b", "archive",
                                utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"))},
                               {}, {}, false, limited);
    EXPECT_EQ(told.status, 0) << told.standardError;
    EXPECT_NE(told.standardOutput.find("can be created from it."), std::string::npos) << told.standardOutput;
}

TEST_F(LongLoad, IsToldWhileItGoesOnAndWhenTheEngineStandsStill)
{
    const std::filesystem::path archive = savedImage(docker, folder.path(), 200);
    // An engine that is done before it is stopped has to do it again.
    std::vector<boost::json::object> objects;
    for (int turn = 0; turn < 3 && !statesOf(objects).contains("stalled"); ++turn) {
        docker.run({"image", "rm", "--force", "kelp_hub_r2026b"});
        const RunResult result = setupWithAPause(archive, {"--progress", "json", "--stall-limit", "3"});
        EXPECT_EQ(result.status, 0) << result.standardOutput << result.standardError;
        objects = progressObjects(result.standardError);
    }
    EXPECT_THAT(statesOf(objects), Contains("stalled"));
    EXPECT_TRUE(statesOf(objects).contains("growing") || statesOf(objects).contains("sent"));
    for (const boost::json::object& object : objects) {
        EXPECT_TRUE(object.at("secondsLeft").is_null()) << "most of the engine's work comes after it has the archive";
        if (!object.at("bytes").is_null()) {
            EXPECT_LE(object.at("bytes").to_number<std::uint64_t>(), std::filesystem::file_size(archive));
        }
    }
    EXPECT_THAT(docker.images(), Contains("kelp_hub_r2026b:latest"));
}

} // namespace
