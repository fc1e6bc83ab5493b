// Listing distributions.
#include "host_fixture.h"

#include "wsl.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using List = std::vector<std::string>;

std::string utf16(const std::string& text)
{
    std::string bytes;
    for (const char character : text) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

class Listing : public HostTest {
protected:
    // wsl.exe is found before the test begins.
    Listing()
    {
        expectWslLookup();
        getExecutablePath();
        host().forgetEvents();
    }
};

TEST_F(Listing, NamesComeInTheOrderOfTheOutput)
{
    expectListing(false, {0, utf16("kelp_hub_R9\r\nDebian\r\nDebian\r\nAlpine\r\n"), "ignored"});
    EXPECT_EQ(getDistros(false), (List{"kelp_hub_R9", "Debian", "Debian", "Alpine"}));
    expectEvents(listing(false, 0));
}

TEST_F(Listing, AnyNumberOfNamesIsRead)
{
    List names;
    std::string output;
    for (int i = 0; i < 100'000; ++i) {
        names.push_back("distribution-" + std::to_string(i));
        output += utf16(names.back() + "\r\n");
    }
    expectListing(false, {0, output, ""});
    EXPECT_EQ(getDistros(false), names);
}

TEST_F(Listing, RunningOnesAreAskedForWithOneMoreOption)
{
    expectListing(true, {0, utf16("Debian\r\n"), ""});
    EXPECT_EQ(getDistros(true), List{"Debian"});
    expectEvents(listing(true, 0));
}

TEST_F(Listing, PlainTextIsTakenToo)
{
    expectListing(false, {0, "one\n\n two\tthree", ""});
    EXPECT_EQ(getDistros(false), (List{"one", "two", "three"}));
}

TEST_F(Listing, ANameWithABlankBecomesTwo)
{
    expectListing(false, {0, utf16("my distro\r\n"), ""});
    EXPECT_EQ(getDistros(false), (List{"my", "distro"}));
}

TEST_F(Listing, OnlyZeroBytesAreTakenOut)
{
    expectListing(false, {0, std::string("\xFF\xFE\xE4\0x\0\0\0\x30\x01\r\0\n\0", 13), ""});
    EXPECT_EQ(getDistros(false), List{"\xFF\xFE\xE4x\x30\x01"});
}

TEST_F(Listing, EmptyOutputMeansNoDistros)
{
    expectListing(false, {0, "", "ignored"});
    EXPECT_EQ(getDistros(false), List{});
    expectEvents(sequence({listing(false, 0), {wslDetail("getDistros: no distros")}}));
}

TEST_F(Listing, OutputWithoutNamesGivesAnEmptyListWithoutALogLine)
{
    expectListing(false, {0, std::string("\0\0\r\0\n\0", 6), ""});
    EXPECT_EQ(getDistros(false), List{});
    expectEvents(listing(false, 0));
}

TEST_F(Listing, AFailureIsLoggedAndGivesAnEmptyList)
{
    expectListing(true, {1, "Debian\n", "There are no running distributions.\r\n"});
    EXPECT_EQ(getDistros(true), List{});
    expectEvents(
        sequence({listing(true, 1), {wslError("getDistros: status = 1; There are no running distributions.\r\n")}}));
}

TEST_F(Listing, ANegativeStatusIsAFailure)
{
    expectListing(false, {-1, "", ""});
    EXPECT_EQ(getDistros(false), List{});
    expectEvents(sequence({listing(false, -1), {wslError("getDistros: status = -1; ")}}));
}

TEST_F(Listing, AdditionalLoggingShowsArgumentsAndNames)
{
    setVariable("KELP_ADDITIONAL_LOGGING", "1");
    expectListing(true, {0, utf16("one\r\ntwo\r\n"), ""});
    EXPECT_EQ(getDistros(true), (List{"one", "two"}));
    expectEvents({wslDetail("getExecutablePath: wsl_path " + wslPath), wslDetail("getDistros: wslPath = " + wslPath),
                  wslDetail("getDistros: wslPath onlyRunning = true"),
                  wslDetail("getDistros: args = [W:\\wsl.exe] [--list] [-q] [--running]"),
                  ran({wslPath, "--list", "-q", "--running"}), wslDetail("getDistros: status = 0"),
                  wslDetail("getDistros: distros = [one] [two]")});
}

TEST_F(Listing, AdditionalLoggingShowsAnEmptyListAsNothing)
{
    setVariable("KELP_ADDITIONAL_LOGGING", "1");
    expectListing(false, {0, "\r\n", ""});
    getDistros(false);
    expectEvents({wslDetail("getExecutablePath: wsl_path " + wslPath), wslDetail("getDistros: wslPath = " + wslPath),
                  wslDetail("getDistros: args = [W:\\wsl.exe] [--list] [-q]"), ran({wslPath, "--list", "-q"}),
                  wslDetail("getDistros: status = 0"), wslDetail("getDistros: distros = ")});
}

TEST_F(Listing, AdditionalLoggingAddsNoNamesToEmptyOutput)
{
    setVariable("KELP_ADDITIONAL_LOGGING", "1");
    expectListing(false, {0, "", ""});
    getDistros(false);
    expectEvents({wslDetail("getExecutablePath: wsl_path " + wslPath), wslDetail("getDistros: wslPath = " + wslPath),
                  wslDetail("getDistros: args = [W:\\wsl.exe] [--list] [-q]"), ran({wslPath, "--list", "-q"}),
                  wslDetail("getDistros: status = 0"), wslDetail("getDistros: no distros")});
}

TEST_F(Listing, AdditionalLoggingIsReadAtEachOfItsTwoPoints)
{
    host().expectRun({wslPath, "--list", "-q"}, [] {
        setVariable("KELP_ADDITIONAL_LOGGING", "1");
        return RunResult{0, "one\n", ""};
    });
    getDistros(false);
    expectEvents(sequence({listing(false, 0), {wslDetail("getDistros: distros = [one]")}}));
    host().expectRun({wslPath, "--list", "-q"}, [] {
        setVariable("KELP_ADDITIONAL_LOGGING", "0");
        return RunResult{0, "one\n", ""};
    });
    getDistros(false);
    EXPECT_EQ(host().eventsLike(wslDetail("getDistros: args = ")).size(), 1U);
    EXPECT_EQ(host().eventsLike(wslDetail("getDistros: distros = ")).size(), 0U);
}

TEST_F(Listing, AdditionalLoggingAddsNoNamesToAFailure)
{
    setVariable("KELP_ADDITIONAL_LOGGING", "1");
    expectListing(false, {5, "one\n", "why"});
    getDistros(false);
    expectEvents({wslDetail("getExecutablePath: wsl_path " + wslPath), wslDetail("getDistros: wslPath = " + wslPath),
                  wslDetail("getDistros: args = [W:\\wsl.exe] [--list] [-q]"), ran({wslPath, "--list", "-q"}),
                  wslDetail("getDistros: status = 5"), wslError("getDistros: status = 5; why")});
}

TEST_F(Listing, AnExceptionOfTheRunnerPassesThrough)
{
    host().expectRun({wslPath, "--list", "-q"}, []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(getDistros(false), std::runtime_error);
}

} // namespace
