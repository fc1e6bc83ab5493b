#include "asking/wsl_config.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>

namespace {

using kelpctl::WslConfig;
using kelpctl::WslConfigFile;
using kelpctl::wslConfigFile;
using kelpctl::wslConfigIn;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(WslConfig, IsReadBySectionAndKey)
{
    const WslConfig config = wslConfigIn("# mine\r\n[wsl2]\r\nkernel=C:\\\\Temp\\\\vmlinux # own\r\n memory = 8GB\r\n"
                                         "networkingMode = Mirrored\r\n");
    EXPECT_EQ(config.kernel, "C:\\Temp\\vmlinux");
    EXPECT_EQ(config.networkingMode, "Mirrored");
}

TEST(WslConfig, TakesNoNoticeOfCaseMarksAndQuotationMarks)
{
    const WslConfig config = wslConfigIn("\xef\xbb\xbf[WSL2]\nKERNEL=\"C:\\\\a b\\\\k\"\nNetworkingmode=none");
    EXPECT_EQ(config.kernel, "C:\\a b\\k");
    EXPECT_EQ(config.networkingMode, "none");
}

TEST(WslConfig, NetworkingModeStoodInAnotherSectionAtFirst)
{
    EXPECT_EQ(wslConfigIn("[experimental]\nnetworkingMode=mirrored\n").networkingMode, "mirrored");
}

TEST(WslConfig, KeysOfOtherSectionsAreOthers)
{
    const WslConfig config = wslConfigIn("kernel=a\n[general]\nkernel=b\n[wsl2x]\nnetworkingMode=c\n[user]\nkernel=d");
    EXPECT_EQ(config.kernel, "");
    EXPECT_EQ(config.networkingMode, "");
}

TEST(WslConfig, TextThatIsNoConfigurationSaysNothing)
{
    for (const std::string& text :
         {std::string(), std::string("["), std::string("[]"), std::string("[wsl2"), std::string("[wsl2]\nkernel"),
          std::string("[wsl2]\n=x\n=\n"), std::string("[wsl2]#kernel=x"), std::string(100000, '['),
          std::string("\0[wsl2]\0kernel=x", 16), std::string("<html>\n</html>\n")}) {
        const WslConfig config = wslConfigIn(text);
        EXPECT_EQ(config.kernel + config.networkingMode, "") << text.substr(0, 20);
    }
}

TEST(WslConfig, BackslashesAreDoubledAndASingleOneStands)
{
    EXPECT_EQ(wslConfigIn("[wsl2]\nkernel=C:\\\\a\\b\\").kernel, "C:\\a\\b\\");
    EXPECT_EQ(wslConfigIn("[wsl2]\nkernel=\\\\\\\\server\\\\share").kernel, "\\\\server\\share");
}

TEST(WslConfig, HasTheValuesOfKeysThatWslKnows)
{
    const WslConfig config = wslConfigIn("\xef\xbb\xbf# mine\r\n[wsl2]\r\nMemory = 4GB \r\nkernel=C:\\k=1\r\n\r\n"
                                         "[experimental]\nsparseVhd=true\n");
    EXPECT_THAT(config.known, ElementsAre(Pair("wsl2.memory", "4GB"), Pair("wsl2.kernel", "C:\\k=1"),
                                          Pair("experimental.sparsevhd", "true")));
    EXPECT_EQ(config.unknown, 0U);
}

TEST(WslConfig, CountsTheOthersAndShowsNothingOfThem)
{
    const WslConfig config =
        wslConfigIn("memory=1GB\n[wsl2]\nkernelCommandLine=token=x\npassword=y\nno key\n[mine]\nswap=0");
    EXPECT_THAT(config.known, IsEmpty());
    EXPECT_EQ(config.unknown, 5U);
}

class WslConfigOfTheUser : public testing::Test {
protected:
    void write(const std::string& text) const { std::ofstream(folder.path() / ".wslconfig", std::ios::binary) << text; }

    TemporaryFolder folder;
    EnvironmentVariable home{"HOME", folder.path().string()};
    EnvironmentVariable profile{"USERPROFILE", folder.path().string()};
};

TEST_F(WslConfigOfTheUser, NeedNotBeThere)
{
    const WslConfigFile file = wslConfigFile();
    EXPECT_FALSE(file.exists);
    EXPECT_TRUE(file.path.ends_with(".wslconfig"));
    EXPECT_EQ(file.kernelExists, std::nullopt);
}

TEST_F(WslConfigOfTheUser, TellsWhetherTheKernelIsThere)
{
    std::string kernel;
    for (const char c : (folder.path() / "kernel").string()) {
        kernel += c == '\\' ? "\\\\" : std::string(1, c);
    }
    write("[wsl2]\nkernel=" + kernel + "\n");
    EXPECT_EQ(wslConfigFile().kernelExists, false);
    std::ofstream(folder.path() / "kernel") << "x";
    EXPECT_EQ(wslConfigFile().kernelExists, true);
}

TEST_F(WslConfigOfTheUser, MayBeUtf16)
{
    std::string text = "\xff\xfe";
    for (const char c : std::string("[wsl2]\r\nnetworkingMode=none\r\n")) {
        text += {c, '\0'};
    }
    write(text);
    EXPECT_EQ(wslConfigFile().config.networkingMode, "none");
}

} // namespace
