#include "terminal/counters.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

using kelpctl::bytesReadBy;
using kelpctl::sizeOfOpened;

TEST(Counters, SizeIsThatOfAFileWhichIsBeingWritten)
{
    const TemporaryFolder folder;
    std::ofstream file(folder.path() / "disk", std::ios::binary);
    EXPECT_EQ(sizeOfOpened(folder.path() / "disk"), 0U);
    for (const std::uint64_t size : {1000U, 3000U}) {
        file.seekp(static_cast<std::streamoff>(size) - 1);
        file << 'x' << std::flush;
        EXPECT_EQ(sizeOfOpened(folder.path() / "disk"), size);
    }
}

TEST(Counters, FileThatIsNotThereHasNoSize)
{
    const TemporaryFolder folder;
    EXPECT_EQ(sizeOfOpened(folder.path() / "none"), std::nullopt);
}

TEST(Counters, ProcessThatDoesNotExistHasReadNothing)
{
    const TemporaryFolder folder;
    EXPECT_EQ(bytesReadBy(0x7ffffffc, folder.path()), std::nullopt);
}

} // namespace
