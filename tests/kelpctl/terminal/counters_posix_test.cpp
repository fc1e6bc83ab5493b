#include "terminal/counters.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

using kelpctl::bytesReadBy;

TEST(CountersOnPosix, ReadIsWhereTheProcessStandsInTheFile)
{
    const TemporaryFolder folder;
    const std::filesystem::path archive = folder.path() / "archive";
    const auto self = static_cast<std::uint32_t>(::getpid());
    std::ofstream(archive) << std::string(1000, 'x');
    EXPECT_EQ(bytesReadBy(self, archive), std::nullopt) << "it is not open";
    const int file = ::open(archive.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(bytesReadBy(self, archive), 0U);
    std::array<char, 300> bytes{};
    ASSERT_EQ(::read(file, bytes.data(), bytes.size()), 300);
    EXPECT_EQ(bytesReadBy(self, archive), 300U);
    std::filesystem::create_hard_link(archive, folder.path() / "other name");
    EXPECT_EQ(bytesReadBy(self, folder.path() / "other name"), 300U);
    ::close(file);
    EXPECT_EQ(bytesReadBy(self, archive), std::nullopt);
}

} // namespace
