#include "asking/watch.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using kelpctl::Eyes;
using kelpctl::RunJournal;
using kelpctl::Signal;
using kelpctl::State;
using kelpctl::Watch;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using std::chrono::steady_clock;

const std::vector<std::string> import = {"wsl.exe", "--import", "hub", "/tmp/folder", "a.tar.gz", "--version", "2"};
const std::vector<std::string> load = {"docker.exe", "load", "-i", "a.tar.gz"};
const std::vector<std::string> dockerImport = {"docker.exe", "import", "a.tar.gz", "hub"};

// What the eyes see, by what is looked at; tests change it between looks.
class Seen : public testing::Test {
protected:
    Eyes::Size find(const std::string& what) const
    {
        const auto found = sizes.find(what);
        return found == sizes.end() ? Eyes::Size() : found->second;
    }

    Eyes eyes()
    {
        return {[this](const auto& file) { return find("size " + file.generic_string()); },
                [this](std::uint32_t id, const auto& file) {
                    return find("read " + std::to_string(id) + " " + file.generic_string());
                },
                [this](const auto& folder) { return find("free " + folder.generic_string()); },
                [this](const auto& archive) { return find("unpacked " + archive.generic_string()); }};
    }

    void start(const std::vector<std::string>& arguments, std::uint32_t processId = 7)
    {
        RunOptions options;
        journal.starting(arguments, options);
        options.startCallback()(processId, nullptr);
    }

    void end(const std::vector<std::string>& arguments)
    {
        const RunResult result;
        journal.ended(arguments, &result);
    }

    Watch::View lookAfter(std::chrono::seconds time) { return watch.look(steady_clock::now() + time); }

    std::map<std::string, std::uint64_t> sizes;
    RunJournal journal;
    Watch watch{journal, std::nullopt, eyes()};
};

TEST_F(Seen, NothingRuns)
{
    EXPECT_EQ(lookAfter(1s).run, 0U);
    EXPECT_EQ(lookAfter(1s).stage.state, State::running);
}

TEST_F(Seen, ImportIsWatchedByItsDisk)
{
    sizes = {{"unpacked a.tar.gz", 1000}, {"free /tmp", 5'000'000'000}};
    start(import);
    EXPECT_EQ(lookAfter(1s).stage.state, State::preparing);
    sizes["size /tmp/folder/ext4.vhdx"] = 370;
    const Watch::View seen = lookAfter(2s);
    EXPECT_EQ(seen.run, 1U);
    EXPECT_EQ(seen.stage.state, State::growing);
    EXPECT_EQ(seen.stage.signal, Signal::disk);
    EXPECT_EQ(seen.stage.percent, 37);
    EXPECT_EQ(seen.stage.freeRoom, 5'000'000'000U);
}

TEST_F(Seen, DiskThatGoesAwayHasBeenThere)
{
    sizes["size /tmp/folder/ext4.vhdx"] = 370;
    start(import);
    lookAfter(1s);
    sizes.clear();
    EXPECT_EQ(lookAfter(2s).stage.bytes, 370U);
}

TEST_F(Seen, LoadIsWatchedByWhatTheClientHasRead)
{
    sizes = {{"size a.tar.gz", 1000}, {"read 7 a.tar.gz", 250}};
    start(load);
    EXPECT_EQ(lookAfter(1s).stage.percent, 25);
    sizes.erase("read 7 a.tar.gz");
    EXPECT_EQ(lookAfter(2s).stage.state, State::sent) << "it has closed the archive";
    EXPECT_EQ(lookAfter(3s).stage.bytes, 1000U);
    end(load);
    start(dockerImport, 8);
    EXPECT_EQ(lookAfter(4s).stage.state, State::running) << "another program";
    sizes["read 8 a.tar.gz"] = 1000;
    const Watch::View seen = lookAfter(5s);
    EXPECT_EQ(seen.stage.state, State::sent);
    EXPECT_EQ(seen.stage.signal, Signal::import);
    EXPECT_EQ(seen.run, 2U);
}

TEST_F(Seen, ProgramThatHasNotStartedIsNotLookedAt)
{
    RunOptions options;
    journal.starting(load, options);
    EXPECT_EQ(lookAfter(1s).stage.state, State::running);
}

TEST_F(Seen, OtherProgramsOnlyRun)
{
    sizes["size a.tar.gz"] = 1000;
    start({"wsl.exe", "--list", "-q"});
    const Watch::View seen = lookAfter(500s);
    EXPECT_EQ(seen.stage.state, State::running);
    EXPECT_EQ(seen.stage.signal, Signal::none);
    EXPECT_GE(seen.stage.elapsed, 500s);
}

TEST_F(Seen, StallIsToldByTheClockThatIsGiven)
{
    sizes["size /tmp/folder/ext4.vhdx"] = 370;
    start(import);
    for (int second = 1; second <= 120; ++second) {
        EXPECT_NE(lookAfter(1s * second).stage.state, State::stalled) << second;
    }
    EXPECT_EQ(lookAfter(122s).stage.state, State::stalled);
}

} // namespace
