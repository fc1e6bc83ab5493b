#include "asking/wsl_config.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace {

using kelpctl::WslConfig;
using kelpctl::wslConfigOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(WslConfig, HasTheValuesOfKeysThatWslKnows)
{
    const WslConfig config = wslConfigOf("\xef\xbb\xbf# mine\r\n[wsl2]\r\nMemory = 4GB \r\nkernel=C:\\k=1\r\n\r\n"
                                         "[experimental]\nsparseVhd=true\n");
    EXPECT_THAT(config.known, ElementsAre(Pair("wsl2.memory", "4GB"), Pair("wsl2.kernel", "C:\\k=1"),
                                          Pair("experimental.sparsevhd", "true")));
    EXPECT_EQ(config.unknown, 0U);
}

TEST(WslConfig, CountsTheOthersAndShowsNothingOfThem)
{
    const WslConfig config =
        wslConfigOf("memory=1GB\n[wsl2]\nkernelCommandLine=token=x\npassword=y\nno key\n[mine]\nswap=0");
    EXPECT_THAT(config.known, IsEmpty());
    EXPECT_EQ(config.unknown, 5U);
}

TEST(WslConfig, LiesInTheUsersFolder)
{
    const TemporaryFolder folder;
    const EnvironmentVariable profile("USERPROFILE", folder.path().string());
    EXPECT_EQ(kelpctl::wslConfigText(), std::nullopt);
    std::ofstream(folder.path() / ".wslconfig") << "[wsl2]";
    EXPECT_EQ(kelpctl::wslConfigText(), "[wsl2]");
}

} // namespace
