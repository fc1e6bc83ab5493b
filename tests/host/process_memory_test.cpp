// How much memory a large output takes.
#include "process_system.h"

#include "host/process.h"

#include <gtest/gtest.h>

#include <string_view>

using orb::process::detail::run;
using orb::process::detail::RunResult;

namespace {

// The program's pieces are a mebibyte each, and all alike.
bool isWhatThePouringChildPrints(std::string_view output)
{
    std::string piece(std::size_t{1024} * 1024, '\0');
    for (std::size_t i = 0; i < piece.size(); ++i) {
        piece[i] = static_cast<char>('a' + i % 23);
    }
    while (output.size() >= piece.size() && output.substr(0, piece.size()) == piece) {
        output.remove_prefix(piece.size());
    }
    return output.empty();
}

} // namespace

TEST(ProcessMemory, OfALargeOutputIsLittleMoreThanItsSizeAlsoTheSecondTime)
{
    constexpr std::size_t size = std::size_t{256} * 1024 * 1024;
    const std::size_t before = peakMemory();
    for (int turn = 0; turn < 2; ++turn) {
        const RunResult result = run(child({"pour", std::to_string(size)}));
        ASSERT_EQ(result.standardOutput.size(), size);
        EXPECT_TRUE(isWhatThePouringChildPrints(result.standardOutput));
    }
    const double ratio = static_cast<double>(peakMemory() - before) / static_cast<double>(size);
    RecordProperty("ratio", std::to_string(ratio));
    EXPECT_LT(ratio, 1.1);
    // The measure itself works.
    EXPECT_GE(ratio, 0.9);
}
