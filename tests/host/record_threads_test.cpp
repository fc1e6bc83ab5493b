// The name of the thread in a record.
#include "host/configuration.h"
#include "host/diagnostics.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <latch>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace foundation::core;

class RecordThreads : public testing::Test {
protected:
    RecordThreads()
    {
        config::Configuration configuration;
        configuration.setChannelMask("test", 8);
        config::configure(configuration);
    }

    // The names in the records that a thread writes.
    std::vector<std::string> written(int records)
    {
        const std::size_t before = names.size();
        for (int number = 0; number < records; ++number) {
            diag::basic_diagnostic_logger logger("test");
            diag::record record(logger, 8);
            record.stream() << number;
            record.push();
        }
        return {names.begin() + static_cast<std::ptrdiff_t>(before), names.end()};
    }

    std::vector<std::string> names;
    diag::sink_handle sink =
        diag::attach_sink([this](const diag::log_record& record) { names.push_back(record.thread); });
};

TEST_F(RecordThreads, AreNamedAlikeInAllRecordsOfAThread)
{
    const std::vector<std::string> own = written(3);
    ASSERT_EQ(own.size(), 3U);
    EXPECT_FALSE(own[0].empty());
    EXPECT_EQ(own, std::vector<std::string>(3, own[0]));
}

// All of them live at the same time: the system may give the name of a thread that has ended to another.
TEST_F(RecordThreads, AreNamedDifferentlyInRecordsOfDifferentThreads)
{
    constexpr int count = 8;
    std::set<std::string> found = {written(1).at(0)};
    std::mutex oneAtATime;
    std::latch all(count);
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&] {
            {
                const std::lock_guard lock(oneAtATime);
                found.insert(written(1).at(0));
            }
            all.arrive_and_wait();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found.size(), std::size_t{count} + 1);
}

} // namespace
