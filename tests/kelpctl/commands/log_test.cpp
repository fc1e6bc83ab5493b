#include "commands/log.h"

#include "fake_lvm.h"
#include "session.h"
#include "temporary_folder.h"

#include "host/configuration.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace {

using foundation::core::diag::log_record;
using kelpctl::logLine;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

log_record record(std::uint32_t severity, const std::string& message)
{
    using namespace std::chrono;
    const system_clock::time_point time = sys_days(2026y / November / 7) + 3h + 4min + 5s + 6ms;
    return {time, "orb:lvm:wsl", severity, "T1", message};
}

std::string contents(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(LogLine, HoldsTimeChannelLevelThreadAndMessage)
{
    EXPECT_EQ(logLine(record(8, "hello"), {}), "2026-11-07T03:04:05.006Z orb:lvm:wsl detail T1 hello");
    EXPECT_EQ(logLine(record(512, "x"), {}), "2026-11-07T03:04:05.006Z orb:lvm:wsl error T1 x");
    EXPECT_EQ(logLine(record(64, "x"), {}), "2026-11-07T03:04:05.006Z orb:lvm:wsl 64 T1 x");
}

TEST(LogLine, StaysOneLine)
{
    EXPECT_THAT(logLine(record(8, "a\nb\t\x1b[0m"), {}), EndsWith(" a\\nb\\t\\x1B[0m"));
}

TEST(LogLine, MakesUtf16Readable)
{
    EXPECT_THAT(logLine(record(512, std::string("n\0o\0", 4)), {}), EndsWith(" error T1 no"));
}

TEST(LogLine, HidesSecretsInEitherEncoding)
{
    EXPECT_THAT(logLine(record(8, "A=hush now"), {"hush"}), EndsWith(" A=*** now"));
    EXPECT_THAT(logLine(record(8, "A=two\nlines"), {"two\nlines"}), EndsWith(" A=***"));
    EXPECT_THAT(logLine(record(8, std::string("h\0u\0s\0h\0", 8)), {"hush"}), EndsWith(" ***"));
}

TEST(Log, MaskFollowsTheLevel)
{
    EXPECT_EQ(kelpctl::channelMask(kelpctl::LogLevel::none), 0U);
    EXPECT_EQ(kelpctl::channelMask(kelpctl::LogLevel::error), 512U);
    EXPECT_EQ(kelpctl::channelMask(kelpctl::LogLevel::detail), 520U);
}

void logSome()
{
    logAs("orb:lvm:wsl", 8, "a detail");
    logAs("orb:lvm:docker", 512, "an error");
    logAs("orbit", 512, "not ours");
}

TEST(Log, NothingIsWrittenUnasked)
{
    fakeLvm().duringImport = logSome;
    Session session;
    EXPECT_EQ(session.run({"provision"}), 0);
    EXPECT_EQ(session.error, "");
}

TEST(Log, ErrorsGoToStandardError)
{
    fakeLvm().duringImport = logSome;
    Session session;
    session.run({"--log", "error", "provision"});
    EXPECT_THAT(session.error, HasSubstr(" orb:lvm:docker error "));
    EXPECT_THAT(session.error, EndsWith("an error\n"));
    EXPECT_THAT(session.error, Not(HasSubstr("a detail")));
    EXPECT_THAT(session.error, Not(HasSubstr("not ours")));
    EXPECT_THAT(session.out, Not(HasSubstr("an error")));
}

TEST(Log, DetailsComeWithTheErrors)
{
    fakeLvm().duringImport = logSome;
    Session session;
    session.run({"--log", "detail", "provision"});
    EXPECT_THAT(session.error, HasSubstr("a detail\n"));
    EXPECT_THAT(session.error, HasSubstr("an error\n"));
}

TEST(Log, FileIsAppendedTo)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / u"lög.txt";
    const std::u8string name = file.u8string();
    const std::vector<std::string> arguments = {"--log", "error", "--log-file", std::string(name.begin(), name.end()),
                                                "provision"};
    std::ofstream(file) << "before\n";
    fakeLvm().duringImport = logSome;
    Session session;
    EXPECT_EQ(session.run(arguments), 0);
    EXPECT_EQ(session.error, "");
    EXPECT_THAT(contents(file), testing::StartsWith("before"));
    EXPECT_THAT(contents(file), EndsWith("an error\n"));
}

TEST(Log, FileThatCannotBeWrittenFails)
{
    const TemporaryFolder folder;
    Session session;
    const std::string name = (folder.path() / "missing" / "log.txt").string();
    EXPECT_EQ(session.run({"--log", "error", "--log-file", name, "check"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: LOG_FILE_NOT_WRITABLE\n"));
    EXPECT_EQ(session.out, "");
    EXPECT_TRUE(fakeLvm().calls.empty());
}

TEST(Log, ValuesOfVariablesNeverAppear)
{
    foundation::core::config::Configuration configuration;
    configuration.setChannelMask("orb", 520);
    foundation::core::config::configure(configuration);
    kelpctl::Request request;
    request.log = kelpctl::LogLevel::detail;
    request.environment = {{"TOKEN", "hush"}, {"EMPTY", ""}};
    std::ostringstream error;
    const kelpctl::Log log(request, error);
    logAs("orb:lvm:wsl", 8, "TOKEN=hush");
    EXPECT_THAT(error.str(), EndsWith(" TOKEN=***\n"));
}

} // namespace
