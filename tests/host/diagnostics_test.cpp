#include "host/configuration.h"
#include "host/diagnostics.h"

#include <gtest/gtest.h>

#include <locale>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace foundation::core;
using diag::basic_diagnostic_logger;
using diag::log_record;

void setMasks(const std::map<std::string, std::uint32_t>& masks)
{
    config::Configuration configuration = config::configuration();
    configuration.setChannelMasks(masks);
    config::configure(configuration);
}

void write(basic_diagnostic_logger& logger, std::uint32_t severity, const std::string& text)
{
    diag::record record(logger, severity);
    ASSERT_TRUE(record);
    record.stream() << text;
    record.push();
}

struct Collected {
    std::vector<log_record> records;
    diag::sink_handle sink = diag::attach_sink([this](const log_record& record) { records.push_back(record); });
};

TEST(Diagnostics, AChannelThatIsNotConfiguredIsSilent)
{
    EXPECT_EQ(basic_diagnostic_logger("test:silent").mask(), 0U);
}

TEST(Diagnostics, MasksAreInheritedDownTheNames)
{
    setMasks({{"orb", 512}, {"orb:lvm", 8}, {"orb:lvm:wsl", 0}});
    EXPECT_EQ(basic_diagnostic_logger("orb:lvm:docker").mask(), 8U);
    EXPECT_EQ(basic_diagnostic_logger("orb:lvm:wsl").mask(), 0U);
    EXPECT_EQ(basic_diagnostic_logger("orb:other:deep").mask(), 512U);
    EXPECT_EQ(basic_diagnostic_logger("orbit").mask(), 0U);
}

TEST(Diagnostics, TheRootChannelServesAllOthers)
{
    setMasks({{"", 256}});
    EXPECT_EQ(basic_diagnostic_logger("anything:at:all").mask(), 256U);
}

TEST(Diagnostics, ANamedParentTakesTheNamesPlace)
{
    setMasks({{"family", 4}});
    EXPECT_EQ(basic_diagnostic_logger("test:adopted", "family").mask(), 4U);
}

TEST(Diagnostics, MasksFollowTheConfigurationWhileALoggerLives)
{
    const basic_diagnostic_logger logger("test:live");
    EXPECT_EQ(logger.mask(), 0U);
    setMasks({{"test", 8}});
    EXPECT_EQ(logger.mask(), 8U);
    setMasks({});
    EXPECT_EQ(logger.mask(), 0U);
}

TEST(Diagnostics, ARecordCarriesChannelSeverityAndText)
{
    Collected collected;
    basic_diagnostic_logger logger("test:channel", "test");
    write(logger, 512, "two\nlines");
    ASSERT_EQ(collected.records.size(), 1U);
    EXPECT_EQ(collected.records[0].channel, "test:channel");
    EXPECT_EQ(collected.records[0].severity, 512U);
    EXPECT_EQ(collected.records[0].message, "two\nlines");
    EXPECT_FALSE(collected.records[0].thread.empty());
    EXPECT_LT(std::chrono::system_clock::now() - collected.records[0].time, std::chrono::minutes(1));
}

TEST(Diagnostics, ARecordThatIsNotPushedIsDropped)
{
    Collected collected;
    basic_diagnostic_logger logger("test:channel");
    {
        diag::record record(logger, 8);
        record.stream() << "never seen";
    }
    EXPECT_TRUE(collected.records.empty());
}

TEST(Diagnostics, ADetachedSinkSeesNothing)
{
    basic_diagnostic_logger logger("test:channel");
    int seen = 0;
    {
        const auto sink = diag::attach_sink([&seen](const log_record&) { ++seen; });
        write(logger, 8, "seen");
    }
    Collected others; // keeps the core from writing to its default sink
    write(logger, 8, "not seen");
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(others.records.size(), 1U);
}

class Grouping : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Diagnostics, AHandleThatGetsAnotherSinkDetachesItsOwn)
{
    setMasks({{"test", 8}});
    basic_diagnostic_logger logger("test");
    std::string heard;
    diag::sink_handle sink = diag::attach_sink([&heard](const log_record&) { heard += "first "; });
    write(logger, 8, "x");
    sink = diag::attach_sink([&heard](const log_record&) { heard += "second "; });
    write(logger, 8, "x");
    EXPECT_EQ(heard, "first second ");
}

TEST(Diagnostics, FlagsAreWrittenAsDigits)
{
    Collected collected;
    basic_diagnostic_logger logger("test:channel");
    diag::record record(logger, 8);
    record.stream() << true << false;
    record.push();
    ASSERT_EQ(collected.records.size(), 1U);
    EXPECT_EQ(collected.records[0].message, "10");
}

TEST(Diagnostics, NumbersAreWrittenAlikeInEveryLocale)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    Collected collected;
    basic_diagnostic_logger logger("test:channel");
    {
        diag::record record(logger, 8);
        record.stream() << "status = " << -2147483647;
        record.push();
    }
    std::locale::global(before);
    ASSERT_EQ(collected.records.size(), 1U);
    EXPECT_EQ(collected.records[0].message, "status = -2147483647");
}

TEST(Diagnostics, ManyThreadsMayLogAtOnce)
{
    Collected collected;
    std::vector<std::thread> threads;
    for (int number = 0; number < 16; ++number) {
        threads.emplace_back([] {
            basic_diagnostic_logger own("test:own");
            for (int round = 0; round < 50; ++round) {
                write(own, 8, "text");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(collected.records.size(), 16U * 50U);
}

} // namespace
