// Finding wsl.exe.
#include "host_fixture.h"

#include "wsl.h"

#include <chrono>
#include <exception>
#include <future>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

using namespace fake;
using namespace orb::lvm::detail;

const std::string fallback = "C:\\Windows\\System32\\wsl.exe";
const Arguments where = {"where", "wsl.exe"};
const Arguments which = {"which", "wsl.exe"};

const Events whereFailed = {ran(where), wslDetail("check_possible_executables: \"where\" command was not found"),
                            ran(which)};

std::string candidateLine(const std::string& text)
{
    return wslDetail("check_possible_executables: wsl_path_candidate = " + text);
}

std::string pathLine(const std::string& path)
{
    return wslDetail("getExecutablePath: wsl_path " + path);
}

std::string fallbackLine()
{
    return wslDetail("check_possible_executables: fallback to " + fallback);
}

class WslDiscovery : public HostTest {};

TEST_F(WslDiscovery, TheFirstCandidateThatAnswersWins)
{
    host().expectRun(where, {0, "C:\\one\\wsl.exe\r\nC:\\two\\wsl.exe\r\n", "ignored"});
    host().expectRun({"C:\\one\\wsl.exe", "-v"}, {0, "WSL version 2", ""});
    EXPECT_EQ(getExecutablePath(), "C:\\one\\wsl.exe");
    expectEvents({ran(where), candidateLine("C:\\one\\wsl.exe\r\nC:\\two\\wsl.exe"), ran({"C:\\one\\wsl.exe", "-v"}),
                  pathLine("C:\\one\\wsl.exe")});
}

TEST_F(WslDiscovery, ACandidateThatFailsIsFollowedByTheNext)
{
    host().expectRun(where, {0, "one\r\ntwo\r\nthree\r\n", ""});
    host().expectRun({"one", "-v"}, {1, "", ""});
    host().expectRun({"two", "-v"}, {-1, "", ""});
    host().expectRun({"three", "-v"}, {0, "", ""});
    EXPECT_EQ(check_possible_executables(), "three");
    expectEvents({ran(where), candidateLine("one\r\ntwo\r\nthree"), ran({"one", "-v"}), ran({"two", "-v"}),
                  ran({"three", "-v"})});
}

TEST_F(WslDiscovery, ACandidateThatCannotBeRunIsPassedOverWithoutALogLine)
{
    host().expectRun(where, {0, "one\ntwo\n", ""});
    host().expectRun({"one", "-v"}, []() -> RunResult { throw std::runtime_error("cannot start"); });
    host().expectRun({"two", "-v"}, {0, "", ""});
    EXPECT_EQ(check_possible_executables(), "two");
    expectEvents({ran(where), candidateLine("one\ntwo"), ran({"one", "-v"}), ran({"two", "-v"})});
}

// What a program may throw that observes the runs, to end a search that takes too long.
struct GivenUp {};

TEST_F(WslDiscovery, ASearchThatIsGivenUpKeepsNothing)
{
    host().expectRun(where, {0, "one\ntwo\n", ""});
    host().expectRun({"one", "-v"}, []() -> RunResult { throw GivenUp(); });
    EXPECT_THROW(check_possible_executables(), GivenUp);
    expectWslLookup();
    EXPECT_EQ(check_possible_executables(), wslPath);
}

TEST_F(WslDiscovery, AnyStandardExceptionOfACandidateIsDropped)
{
    host().expectRun(where, {0, "one\ntwo\nthree\nfour\n", ""});
    host().expectRun({"one", "-v"}, []() -> RunResult { throw std::invalid_argument("no program"); });
    host().expectRun({"two", "-v"}, []() -> RunResult { throw std::bad_alloc(); });
    host().expectRun({"three", "-v"}, []() -> RunResult { throw std::exception(); });
    host().expectRun({"four", "-v"});
    EXPECT_EQ(check_possible_executables(), "four");
}

TEST_F(WslDiscovery, WhichIsAskedWhenWhereFails)
{
    host().expectRun(where, {1, "not used\n", ""});
    host().expectRun(which, {0, "/c/Windows/System32/wsl.exe\n", "ignored"});
    host().expectRun({"c:\\Windows\\System32\\wsl.exe", "-v"}, {0, "", ""});
    EXPECT_EQ(getExecutablePath(), "c:\\Windows\\System32\\wsl.exe");
    expectEvents(
        sequence({whereFailed,
                  {candidateLine("c:\\Windows\\System32\\wsl.exe"), ran({"c:\\Windows\\System32\\wsl.exe", "-v"}),
                   pathLine("c:\\Windows\\System32\\wsl.exe")}}));
}

TEST_F(WslDiscovery, ADriveInTheOutputOfWhereIsRewrittenToo)
{
    host().expectRun(where, {0, "/c/a b/wsl.exe\n/c/d/wsl.exe\n", ""});
    host().expectRun({"c:\\a b\\wsl.exe", "-v"}, {2, "", ""});
    host().expectRun({"\\c\\d\\wsl.exe", "-v"}, {0, "", ""});
    EXPECT_EQ(check_possible_executables(), "\\c\\d\\wsl.exe");
    expectEvents({ran(where), candidateLine("c:\\a b\\wsl.exe\n\\c\\d\\wsl.exe"), ran({"c:\\a b\\wsl.exe", "-v"}),
                  ran({"\\c\\d\\wsl.exe", "-v"})});
}

TEST_F(WslDiscovery, ADriveElsewhereIsNotRewritten)
{
    host().expectRun(where, {0, " /c/a/wsl.exe\n/c/b\n/d/c/wsl.exe\nx/c/y", ""});
    host().expectRun({"/c/a/wsl.exe", "-v"}, {1, "", ""});
    host().expectRun({"/c/b", "-v"}, {1, "", ""});
    host().expectRun({"/d/c/wsl.exe", "-v"}, {1, "", ""});
    host().expectRun({"x/c/y", "-v"}, {0, "", ""});
    EXPECT_EQ(check_possible_executables(), "x/c/y");
}

TEST_F(WslDiscovery, AnotherDriveIsNotRewritten)
{
    host().expectRun(where, {0, "/d/c/wsl.exe\n", ""});
    host().expectRun({"/d/c/wsl.exe", "-v"});
    EXPECT_EQ(check_possible_executables(), "/d/c/wsl.exe");
}

TEST_F(WslDiscovery, OnlyTheStatusOfACandidateCounts)
{
    host().expectRun(where, {0, "one\ntwo\n", "a warning"});
    host().expectRun({"one", "-v"}, {0, "", "a warning"});
    EXPECT_EQ(check_possible_executables(), "one");
}

TEST_F(WslDiscovery, AFolderThatOnlyBeginsLikeADriveIsNotRewritten)
{
    host().expectRun(where, {0, "/cygdrive/c/wsl.exe\n", ""});
    host().expectRun({"/cygdrive/c/wsl.exe", "-v"});
    EXPECT_EQ(check_possible_executables(), "/cygdrive/c/wsl.exe");
}

TEST_F(WslDiscovery, BothLookUpsFailing)
{
    host().expectRun(where, {1, "one\n", ""});
    host().expectRun(which, {127, "two\n", ""});
    EXPECT_EQ(getExecutablePath(), fallback);
    expectEvents(sequence({whereFailed, {fallbackLine(), pathLine(fallback)}}));
}

TEST_F(WslDiscovery, NegativeStatusesAreFailures)
{
    host().expectRun(where, {-1, "one\n", ""});
    host().expectRun(which, {-1, "two\n", ""});
    EXPECT_EQ(check_possible_executables(), fallback);
    expectEvents(sequence({whereFailed, {fallbackLine()}}));
}

TEST_F(WslDiscovery, AllCandidatesFailing)
{
    host().expectRun(where, {0, "one\r\ntwo\r\n", ""});
    host().expectRun({"one", "-v"}, {1, "", ""});
    host().expectRun({"two", "-v"}, {1, "", ""});
    EXPECT_EQ(getExecutablePath(), fallback);
    expectEvents({ran(where), candidateLine("one\r\ntwo"), ran({"one", "-v"}), ran({"two", "-v"}), fallbackLine(),
                  pathLine(fallback)});
}

TEST_F(WslDiscovery, BlankOutputHoldsNoCandidate)
{
    host().expectRun(where, {0, " \r\n\t\r\n", ""});
    EXPECT_EQ(getExecutablePath(), fallback);
    expectEvents({ran(where), candidateLine(""), fallbackLine(), pathLine(fallback)});
}

TEST_F(WslDiscovery, BlanksAroundLinesAreRemoved)
{
    host().expectRun(where, {0, "\v\f\r\n  one \t\r\n\r\n \ttwo words\r\n \r\n", ""});
    host().expectRun({"one", "-v"}, {1, "", ""});
    host().expectRun({"two words", "-v"}, {0, "", ""});
    EXPECT_EQ(check_possible_executables(), "two words");
    expectEvents(
        {ran(where), candidateLine("one \t\r\n\r\n \ttwo words"), ran({"one", "-v"}), ran({"two words", "-v"})});
}

TEST_F(WslDiscovery, ASecondCallRunsNothing)
{
    expectWslLookup();
    EXPECT_EQ(getExecutablePath(), wslPath);
    expectEvents(wslLookup());
    EXPECT_EQ(getExecutablePath(), wslPath);
    expectEvents({pathLine(wslPath)});
    EXPECT_EQ(check_possible_executables(), wslPath);
    expectEvents({});
}

TEST_F(WslDiscovery, TheFallbackIsKeptToo)
{
    host().expectRun(where, {1, "", ""});
    host().expectRun(which, {1, "", ""});
    getExecutablePath();
    host().forgetEvents();
    EXPECT_EQ(getExecutablePath(), fallback);
    expectEvents({pathLine(fallback)});
}

TEST_F(WslDiscovery, ALookUpThatCannotBeRunPassesOutAndIsTriedAgain)
{
    host().expectRun(where, []() -> RunResult { throw std::runtime_error("no where"); });
    EXPECT_THROW(getExecutablePath(), std::runtime_error);
    expectEvents({ran(where)});
    host().expectRun(where, {1, "", ""});
    host().expectRun(which, []() -> RunResult { throw std::logic_error("no which"); });
    EXPECT_THROW(getExecutablePath(), std::logic_error);
    expectEvents(whereFailed);
    expectWslLookup();
    EXPECT_EQ(getExecutablePath(), wslPath);
    expectEvents(wslLookup());
}

TEST_F(WslDiscovery, TheFallbackIsKeptBeforeItIsLogged)
{
    host().expectRun(where, {1, "", ""});
    host().expectRun(which, {1, "", ""});
    host().failAt(fallbackLine());
    EXPECT_THROW(check_possible_executables(), std::runtime_error);
    expectEvents(sequence({whereFailed, {fallbackLine()}}));
    EXPECT_EQ(check_possible_executables(), fallback);
    expectEvents({});
}

// A host's observer of runs that wants to know, during the search, whether a run is one of WSL's.
TEST_F(WslDiscovery, WhoObservesTheSearchMayAskForThePath)
{
    std::string nested;
    host().expectRun(where, [&nested] {
        expectWslLookup();
        nested = getExecutablePath();
        host().expectRun({"other", "-v"});
        return RunResult{0, "other\n", ""};
    });
    EXPECT_EQ(getExecutablePath(), wslPath) << "what was found first stays";
    EXPECT_EQ(nested, wslPath);
    expectEvents(sequence({{ran(where)}, wslLookup(), {candidateLine("other"), ran({"other", "-v"})}, wslPathUsed()}));
    EXPECT_EQ(check_possible_executables(), wslPath);
}

// Each of two threads must be in its search while the other is; each finds another program.
TEST_F(WslDiscovery, ThreadsThatSearchAtOnceDoNotWaitForEachOtherAndAgree)
{
    std::promise<void> firstSearches;
    std::promise<void> secondSearches;
    std::promise<void> firstIsDone;
    const auto comes = [](std::promise<void>& promise) {
        return promise.get_future().wait_for(std::chrono::seconds{20}) == std::future_status::ready;
    };
    host().expectRun(where, [&] {
        firstSearches.set_value();
        EXPECT_TRUE(comes(secondSearches)) << "the second thread waits for the first";
        host().expectRun({"first", "-v"});
        return RunResult{0, "first\n", ""};
    });
    host().expectRun(where, [&] {
        secondSearches.set_value();
        EXPECT_TRUE(comes(firstIsDone));
        host().expectRun({"second", "-v"});
        return RunResult{0, "second\n", ""};
    });

    std::string foundBySecond;
    std::thread second([&] {
        EXPECT_TRUE(comes(firstSearches));
        foundBySecond = check_possible_executables();
    });
    EXPECT_EQ(check_possible_executables(), "first");
    firstIsDone.set_value();
    second.join();
    EXPECT_EQ(foundBySecond, "first") << "once it is known, the path never changes";
    EXPECT_EQ(check_possible_executables(), "first");
}

TEST_F(WslDiscovery, AnEmptyPathIsReplaced)
{
    EXPECT_EQ(orFallback(""), fallback);
    expectEvents({wslDetail("getExecutablePath: check_possible_executables failed, fallback to " + fallback)});
    EXPECT_EQ(orFallback("some path"), "some path");
    expectEvents({});
}

} // namespace
