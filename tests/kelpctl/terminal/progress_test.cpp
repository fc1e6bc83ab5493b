#include "terminal/progress.h"

#include "fake_lvm.h"
#include "session.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using kelpctl::Progress;
using kelpctl::progressLine;
using kelpctl::ProgressOptions;
using kelpctl::ProgressView;
using std::chrono::steady_clock;
using testing::HasSubstr;

// Ten minutes, so that nothing is ever drawn.
ProgressOptions slow()
{
    ProgressOptions options;
    options.interval = 600s;
    return options;
}

TEST(Progress, ShortWorkShowsNothing)
{
    std::ostringstream terminal;
    {
        const Progress progress(
            terminal,
            [](auto, auto) {
                return ProgressView{"setup", {"notice"}};
            },
            slow());
    }
    EXPECT_EQ(terminal.str(), "");
}

// What is written when each look gives the next view; the last one is given until it is surely out.
std::string shown(const std::vector<ProgressView>& views)
{
    std::ostringstream terminal;
    std::promise<void> out;
    std::size_t looks = 0;
    const auto look = [&](auto, auto) {
        if (looks == views.size()) {
            out.set_value();
        }
        return views[std::min(looks++, views.size() - 1)];
    };
    {
        const Progress progress(terminal, look, {1ms});
        out.get_future().wait();
    }
    return terminal.str();
}

TEST(Progress, LineIsDrawnAnewAndErased)
{
    const std::string text = shown({{"setup ... 5 s", {}}, {"setup ... 10 s", {}}});
    EXPECT_THAT(text, testing::StartsWith("\rsetup ... 5 s\rsetup ... 10 s\r"));
    EXPECT_THAT(text, testing::EndsWith("\r              \r"));
}

TEST(Progress, ShorterLineLeavesNothingOfTheLongerOne)
{
    EXPECT_THAT(shown({{"long line", {}}, {"short", {}}}), testing::StartsWith("\rlong line\rshort    \r"));
}

TEST(Progress, NoticesStayAndStandOnLinesOfTheirOwn)
{
    EXPECT_THAT(shown({{"line", {}}, {"line", {"one", "two"}}, {"line", {}}}),
                testing::StartsWith("\rline\r    \rone\ntwo\n\rline\rline"));
}

TEST(Progress, NoticesNeedNoLine)
{
    EXPECT_EQ(shown({{"", {"one"}}, {"", {}}}), "one\n");
}

TEST(Progress, LineThatIsGivenUpIsErased)
{
    EXPECT_EQ(shown({{"line", {}}, {"", {}}}), "\rline\r    \r");
}

TEST(Progress, TheTimeIsCountedFromTheBeginning)
{
    std::ostringstream terminal;
    std::promise<std::chrono::seconds> told;
    std::atomic<int> asked = 0;
    ProgressOptions options;
    options.interval = 1ms;
    options.clock = [&asked] { return steady_clock::time_point(1h + asked++ * 5s); };
    {
        const Progress progress(
            terminal,
            [&](auto now, auto elapsed) {
                EXPECT_EQ(now - steady_clock::time_point(1h), elapsed);
                if (asked == 3) {
                    told.set_value(elapsed);
                }
                return ProgressView();
            },
            options);
        EXPECT_EQ(told.get_future().get(), 10s);
    }
}

TEST(Progress, LookThatFailsLeavesWhatThereWas)
{
    std::ostringstream terminal;
    std::promise<void> out;
    int looks = 0;
    {
        const Progress progress(terminal,
                                [&](auto, auto) -> ProgressView {
                                    if (++looks == 3) {
                                        out.set_value();
                                    }
                                    if (looks > 1) {
                                        throw std::runtime_error("nothing to see");
                                    }
                                    return {"line", {}};
                                },
                                {1ms});
        out.get_future().wait();
    }
    EXPECT_EQ(terminal.str(), "\rline\r    \r");
}

TEST(ProgressLine, TellsWhatIsAwaited)
{
    EXPECT_EQ(progressLine("kelpctl setup", "wsl.exe --import hub", 0s), "kelpctl setup: wsl.exe --import hub ... 0 s");
    EXPECT_EQ(progressLine("kelpctl setup", "", 5s), "kelpctl setup ... 5 s");
}

TEST(ProgressLine, IsCut)
{
    EXPECT_EQ(progressLine("kelpctl setup", "wsl.exe --import hub", 0s, 30), "kelpctl setup: wsl.exe ... 0 s");
}

TEST(ProgressLine, TerminalObeysNothingInIt)
{
    EXPECT_EQ(progressLine("kelpctl setup", "a\x1b[2J", 0s), "kelpctl setup: a\\x1B[2J ... 0 s");
}

void workLongerThanASecond()
{
    ranProgram({"/tools/wsl.exe", "--list"}, {0, {}, {}});
    std::this_thread::sleep_for(1300ms);
}

TEST(Progress, LongWorkShowsItOnATerminal)
{
    fakeLvm().duringImport = workLongerThanASecond;
    Session session;
    session.errorIsTerminal = true;
    EXPECT_EQ(session.run({"setup"}), 0);
    EXPECT_THAT(session.error, HasSubstr("\rkelpctl setup ... 1 s"));
    EXPECT_THAT(session.error, testing::EndsWith("\r"));
}

TEST(Progress, NothingIsShownWhereNoTerminalIs)
{
    fakeLvm().duringImport = workLongerThanASecond;
    Session session;
    EXPECT_EQ(session.run({"setup"}), 0);
    EXPECT_EQ(session.error, "");
}

TEST(Progress, LogOnTheTerminalTakesItsPlace)
{
    fakeLvm().duringImport = workLongerThanASecond;
    Session session;
    session.errorIsTerminal = true;
    EXPECT_EQ(session.run({"--log", "error", "setup"}), 0);
    EXPECT_EQ(session.error, "");
}

} // namespace
