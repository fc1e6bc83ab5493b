#include "terminal/counters.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include <windows.h>

namespace {

using kelpctl::bytesReadBy;

// Wine counts nothing, so that there is nothing to see.
TEST(CountersOnWindows, ReadIsAllThatTheProcessHasReadOnceItIsMuch)
{
    constexpr std::size_t size = 5 << 20;
    const TemporaryFolder folder;
    const std::filesystem::path archive = folder.path() / "archive";
    std::ofstream(archive, std::ios::binary) << std::string(size, 'x');
    std::string content(size, '\0');
    std::ifstream(archive, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
    const auto read = bytesReadBy(GetCurrentProcessId(), archive);
    EXPECT_TRUE(!read || *read >= size) << *read;
}

} // namespace
