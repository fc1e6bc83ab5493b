// How much memory a large output takes.
#include "process_system.h"

#include "host/process.h"

#include <gtest/gtest.h>

using orb::process::detail::run;
using orb::process::detail::RunResult;

TEST(ProcessMemory, ofALargeOutputIsLittleMoreThanItsSizeAlsoTheSecondTime)
{
    constexpr std::size_t size = std::size_t{256} * 1024 * 1024;
    const std::size_t before = peakMemory();
    for (int turn = 0; turn < 2; ++turn) {
        const RunResult result = run(child({"pour", std::to_string(size)}));
        ASSERT_EQ(result.standardOutput.size(), size);
        // The program's pieces are a mebibyte each.
        EXPECT_EQ(result.standardOutput[0], 'a');
        EXPECT_EQ(result.standardOutput[size - 1], static_cast<char>('a' + (1024 * 1024 - 1) % 23));
    }
    const double ratio = static_cast<double>(peakMemory() - before) / static_cast<double>(size);
    RecordProperty("ratio", std::to_string(ratio));
    EXPECT_LT(ratio, 1.1);
    // The measure itself works.
    EXPECT_GE(ratio, 0.9);
}
