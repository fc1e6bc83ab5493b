#include "terminal/progress.h"

#include "fake_lvm.h"
#include "session.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <sstream>
#include <thread>

namespace {

using namespace std::chrono_literals;
using kelpctl::Progress;
using kelpctl::ProgressOptions;
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
        const Progress progress(terminal, "setup", slow());
    }
    EXPECT_EQ(terminal.str(), "");
}

TEST(Progress, LineIsDrawnAnewAndErased)
{
    std::ostringstream terminal;
    std::promise<void> drawnTwice;
    std::atomic<int> asked = 0;
    const auto clock = [&asked, &drawnTwice] {
        // The first answer is the start, each further one a line; with the third line two are surely out.
        const int count = asked++;
        if (count == 3) {
            drawnTwice.set_value();
        }
        return steady_clock::time_point(count * 5s);
    };
    {
        const Progress progress(terminal, "kelpctl setup", {1ms, clock, [] { return std::string(); }, 79});
        drawnTwice.get_future().wait();
    }
    const std::string text = terminal.str();
    EXPECT_THAT(text, testing::StartsWith("\rkelpctl setup ... 5 s\rkelpctl setup ... 10 s\r"));
    const std::size_t last = text.rfind("kelpctl setup");
    const std::size_t length = text.find('\r', last) - last;
    EXPECT_THAT(text, testing::EndsWith(std::string("\r").append(length, ' ').append("\r")));
}

// What the terminal shows after the first line.
std::string firstLine(const std::string& awaited, std::size_t columns)
{
    std::ostringstream terminal;
    std::promise<void> drawn;
    std::atomic<int> asked = 0;
    ProgressOptions options;
    options.interval = 1ms;
    options.columns = columns;
    options.awaited = [&] {
        if (asked++ == 1) {
            drawn.set_value();
        }
        return awaited;
    };
    {
        const Progress progress(terminal, "kelpctl setup", options);
        drawn.get_future().wait();
    }
    const std::string text = terminal.str();
    return text.substr(1, text.find('\r', 1) - 1);
}

TEST(Progress, LineTellsWhatIsAwaited)
{
    EXPECT_EQ(firstLine("wsl.exe --import hub", 79), "kelpctl setup: wsl.exe --import hub ... 0 s");
}

TEST(Progress, LongLineIsCut)
{
    EXPECT_EQ(firstLine("wsl.exe --import hub", 30), "kelpctl setup: wsl.exe ... 0 s");
}

TEST(Progress, TerminalObeysNothingInTheLine)
{
    EXPECT_EQ(firstLine("a\x1b[2J", 79), "kelpctl setup: a\\x1B[2J ... 0 s");
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
