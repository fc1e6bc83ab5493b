#include "commands/work_progress.h"

#include "fake_lvm.h"
#include "session.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using kelpctl::Console;
using kelpctl::Eyes;
using kelpctl::ProgressView;
using kelpctl::WorkProgress;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::vector<std::string> import = {"wsl.exe", "--import", "hub", "/tmp/folder", "a.tar.gz", "--version", "2"};
const std::vector<std::string> load = {"docker.exe", "load", "-i", "a.tar.gz"};

class Told : public testing::Test {
protected:
    Told()
    {
        request.command = "setup";
        request.name = "hub";
    }

    void start(const std::vector<std::string>& arguments)
    {
        orb::process::detail::RunOptions options;
        journal.starting(arguments, options);
        options.startCallback()(7, nullptr);
    }

    WorkProgress progress()
    {
        const auto same = [this](auto&&...) { return seen; };
        const auto free = [this](auto&&...) { return freeRoom; };
        return WorkProgress(context, {same, same, free, [](auto&&...) { return Eyes::Size(1000 << 20); }});
    }

    static ProgressView lookAfter(WorkProgress& progress, std::chrono::seconds time)
    {
        return progress.look(steady_clock::now() + time, time);
    }

    // What is told when nothing has moved for so long.
    static ProgressView waitFor(WorkProgress& progress, std::chrono::seconds time)
    {
        ProgressView view;
        for (std::chrono::seconds second = 1s; second <= time; ++second) {
            view = lookAfter(progress, second);
        }
        return view;
    }

    Eyes::Size seen = 412 << 20;
    Eyes::Size freeRoom = std::uint64_t{5} << 30;
    std::ostringstream out;
    std::ostringstream error;
    Console console{out, error, true};
    kelpctl::Request request;
    kelpctl::Programs programs;
    kelpctl::RunJournal journal;
    kelpctl::Context context{request, console, programs, journal};
};

TEST_F(Told, OnATerminalIsHowFarTheWorkIs)
{
    WorkProgress told = progress();
    EXPECT_EQ(lookAfter(told, 1s).line, "kelpctl setup ... 1 s");
    start(import);
    EXPECT_EQ(lookAfter(told, 2s).line, "kelpctl setup: 412 MiB of about 1000 MiB (41 %) ... 2 s");
}

TEST_F(Told, IsTheProgramWhereNothingCanBeSeen)
{
    WorkProgress told = progress();
    start({"/x/wsl.exe", "--list", "-q"});
    EXPECT_EQ(lookAfter(told, 1s).line, "kelpctl setup: wsl.exe --list -q ... 1 s");
}

TEST_F(Told, NothingButNoticesIsWithoutATerminal)
{
    console.errorIsTerminal = false;
    WorkProgress told = progress();
    start(import);
    const ProgressView view = lookAfter(told, 1s);
    EXPECT_EQ(view.line, "");
    EXPECT_THAT(view.notices, IsEmpty());
    EXPECT_THAT(waitFor(told, 122s).notices, IsEmpty()) << "it was said before";
}

TEST_F(Told, StallIsOnce)
{
    console.errorIsTerminal = false;
    WorkProgress told = progress();
    start(import);
    std::vector<std::string> notices;
    for (std::chrono::seconds second = 1s; second <= 300s; ++second) {
        for (const std::string& notice : lookAfter(told, second).notices) {
            notices.push_back(notice);
        }
    }
    EXPECT_THAT(notices, ElementsAre("kelpctl setup: Nothing has come to the disk of hub for 120 s; the import may be "
                                     "stuck. Wait, or end it with Ctrl-C: what WSL has begun may go on all the same."));
    EXPECT_FALSE(journal.gaveUp()) << "it only tells";
}

TEST_F(Told, EachRunHasItsOwnNotices)
{
    request.stallLimit = 1s;
    WorkProgress told = progress();
    start(load);
    EXPECT_THAT(waitFor(told, 3s).notices, IsEmpty());
    const orb::process::detail::RunResult result;
    journal.ended(load, &result);
    start(load);
    std::vector<std::string> notices;
    for (std::chrono::seconds second = 1s; second <= 9s; ++second) {
        for (const std::string& notice : lookAfter(told, second).notices) {
            notices.push_back(notice);
        }
    }
    EXPECT_THAT(notices, ElementsAre(HasSubstr("the Docker engine may be stuck")));
}

TEST_F(Told, DiskThatIsNearlyFullIsToldAtOnce)
{
    freeRoom = 800 << 20;
    WorkProgress told = progress();
    start(import);
    const ProgressView view = lookAfter(told, 1s);
    EXPECT_EQ(view.line, "kelpctl setup: 412 MiB unpacked, only 800 MiB left on the disk ... 1 s");
    EXPECT_THAT(view.notices,
                ElementsAre("kelpctl setup: Only 800 MiB are left on the disk that hub is unpacked to. Make "
                            "room there now: WSL does not always tell when it has run out."));
    EXPECT_THAT(lookAfter(told, 2s).notices, IsEmpty());
}

TEST_F(Told, ProgramsGetAnObjectASecondAndNothingElse)
{
    request.progressObjects = true;
    freeRoom = 800 << 20;
    WorkProgress told = progress();
    start(import);
    for (std::chrono::seconds second = 1s; second <= 3s; ++second) {
        const ProgressView view = lookAfter(told, second);
        EXPECT_EQ(view.line, "");
        ASSERT_THAT(view.notices, SizeIs(1));
        EXPECT_EQ(boost::json::parse(view.notices.front()).at("progress").at("state"), "lowDisk");
        EXPECT_EQ(boost::json::parse(view.notices.front()).at("progress").at("command"), "wsl.exe --import hub");
    }
}

TEST_F(Told, StalledWorkIsEndedWhenTheUserWantsIt)
{
    request.endWhenStalled = true;
    request.stallLimit = 30s;
    WorkProgress told = progress();
    start(import);
    waitFor(told, 29s);
    EXPECT_FALSE(journal.gaveUp());
    waitFor(told, 33s);
    EXPECT_TRUE(journal.gaveUp());
    EXPECT_TRUE(journal.shouldTerminate());
}

// The library's import, which looks as if it stood still from its beginning.
void importThatStalls()
{
    using namespace orb::process::detail;
    RunObserver* const observer = observeRuns(nullptr);
    observeRuns(observer);
    RunOptions options;
    observer->starting({"wsl.exe", "--import", "hub", "/tmp/no/such", "a.tar", "--version", "2"}, options);
    while (!observer->shouldTerminate()) {
        std::this_thread::sleep_for(10ms);
    }
    const RunResult result{1, {}, {}};
    observer->ended({"wsl.exe", "--import", "hub", "/tmp/no/such", "a.tar", "--version", "2"}, &result);
    throw std::runtime_error("what the library makes of it");
}

TEST(Stalled, HasAnIdentifierOfItsOwnAndSaysWhatMayGoOn)
{
    fakeLvm().duringImport = importThatStalls;
    Session session;
    EXPECT_EQ(session.run({"--wsl", "setup", "--stall-limit", "1", "--end-when-stalled", "--json"}), 1);
    const boost::json::value error = session.json().at("error");
    EXPECT_EQ(error.at("identifier"), "WORK_STALLED");
    EXPECT_EQ(error.at("cause").at("identifier"), "IMPORT_LEFT");
    EXPECT_THAT(std::string(error.at("cause").at("message").as_string()), HasSubstr("/tmp/no/such"));
    EXPECT_EQ(error.at("evidence").at("arguments").at(1), "--import");
    EXPECT_THAT(session.error, HasSubstr("the import may be stuck"));
}

TEST(Stalled, IsNotWhatHasSucceededAfterAll)
{
    fakeLvm().duringImport = [] {
        try {
            importThatStalls();
        } catch (const std::runtime_error&) {
        }
    };
    Session session;
    EXPECT_EQ(session.run({"--wsl", "setup", "--stall-limit", "1", "--end-when-stalled"}), 0);
}

} // namespace
