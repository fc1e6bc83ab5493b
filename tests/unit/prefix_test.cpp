// The prefixes of commands that run inside the environment.
#include "host_fixture.h"

#include "orb/lvm.h"
#include "wsl.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm;

class WslPrefix : public HostTest {
protected:
    static void expectPath(const std::string& path)
    {
        host().expectRun({"where", "wsl.exe"}, {0, path + "\r\n", ""});
        host().expectRun({path, "-v"});
    }
};

TEST_F(WslPrefix, TheStringEndsInABlankAndIgnoresTheContainer)
{
    expectWslLookup();
    EXPECT_EQ(getContainerCommandPrefix("abc"), "W:\\wsl.exe -d kelp_hub_R9 --exec ");
    expectEvents(sequence({wslLookup(), {askedRelease}}));
    EXPECT_EQ(getContainerCommandPrefix(""), "W:\\wsl.exe -d kelp_hub_R9 --exec ");
    expectEvents(wslPathUsed());
}

TEST_F(WslPrefix, TheVectorHasFourElements)
{
    expectWslLookup();
    EXPECT_EQ(getContainerArgumentsPrefix("abc"), (Arguments{wslPath, "-d", "kelp_hub_R9", "--exec"}));
    expectEvents(sequence({wslLookup(), {askedRelease}}));
    EXPECT_EQ(detail::wslArgumentsPrefix(), (Arguments{wslPath, "-d", "kelp_hub_R9", "--exec"}));
    expectEvents(wslPathUsed());
}

TEST_F(WslPrefix, WithoutAReleaseTheDistroIsTheStem)
{
    host().release = [] { return nullptr; };
    expectWslLookup();
    EXPECT_EQ(getContainerCommandPrefix(""), "W:\\wsl.exe -d kelp_hub --exec ");
    EXPECT_EQ(getContainerArgumentsPrefix(""), (Arguments{wslPath, "-d", "kelp_hub", "--exec"}));
}

TEST_F(WslPrefix, APathWithABlankIsQuotedInTheStringOnly)
{
    expectPath("W:\\my programs\\wsl.exe");
    EXPECT_EQ(getContainerCommandPrefix(""), "\"W:\\my programs\\wsl.exe\" -d kelp_hub_R9 --exec ");
    EXPECT_EQ(getContainerArgumentsPrefix("").front(), "W:\\my programs\\wsl.exe");
    EXPECT_EQ(getContainerExecutablePath(), "W:\\my programs\\wsl.exe");
}

TEST_F(WslPrefix, OtherBlanksAreNotQuoted)
{
    expectPath("W:\\my\tprograms\\wsl.exe");
    EXPECT_EQ(getContainerCommandPrefix(""), "W:\\my\tprograms\\wsl.exe -d kelp_hub_R9 --exec ");
}

TEST_F(WslPrefix, TheExecutableAlone)
{
    expectWslLookup();
    EXPECT_EQ(getContainerExecutablePath(), wslPath);
    expectEvents(wslLookup());
}

TEST_F(WslPrefix, ExceptionsOfTheLookUpPassThrough)
{
    const auto fail = []() -> RunResult { throw std::runtime_error("no where"); };
    host().expectRun({"where", "wsl.exe"}, fail);
    EXPECT_THROW(getContainerCommandPrefix(""), std::runtime_error);
    host().expectRun({"where", "wsl.exe"}, fail);
    EXPECT_THROW(getContainerArgumentsPrefix(""), std::runtime_error);
    host().expectRun({"where", "wsl.exe"}, fail);
    EXPECT_THROW(getContainerExecutablePath(), std::runtime_error);
    EXPECT_TRUE(host().eventsLike(askedRelease).empty()) << "a release that is asked for is kept for the process";
}

class DockerPrefix : public HostTest {
protected:
    DockerPrefix() { setVariable("USE_WSL", "0"); }

    static void expectPath(const std::string& path) { host().expectRun({"where", "docker.exe"}, {0, path, ""}); }
};

TEST_F(DockerPrefix, TheStringEndsWithTheContainer)
{
    expectPath("D:\\docker.exe\r\n");
    EXPECT_EQ(getContainerCommandPrefix("abc"), "D:\\docker.exe exec abc");
    expectEvents({ranIn("c:", {"where", "docker.exe"}), "cvt_string_ustring D:\\docker.exe", "exists D:\\docker.exe"});
    expectPath("D:\\docker.exe\r\n");
    EXPECT_EQ(getContainerCommandPrefix(""), "D:\\docker.exe exec kelp_hub");
}

TEST_F(DockerPrefix, TheVectorHasThreeElements)
{
    expectPath("D:\\docker.exe\r\n");
    EXPECT_EQ(getContainerArgumentsPrefix(""), (Arguments{"D:\\docker.exe", "exec", "kelp_hub"}));
    expectEvents({ranIn("c:", {"where", "docker.exe"}), "cvt_string_ustring D:\\docker.exe", "exists D:\\docker.exe"});
    expectPath("D:\\docker.exe\r\n");
    EXPECT_EQ(getContainerArgumentsPrefix("my container"), (Arguments{"D:\\docker.exe", "exec", "my container"}));
}

TEST_F(DockerPrefix, APathWithABlankIsQuotedInTheStringOnly)
{
    expectPath("D:\\my programs\\docker.exe");
    EXPECT_EQ(getContainerCommandPrefix("a b"), "\"D:\\my programs\\docker.exe\" exec a b");
    expectPath("D:\\my programs\\docker.exe");
    EXPECT_EQ(getContainerArgumentsPrefix("c").front(), "D:\\my programs\\docker.exe");
}

TEST_F(DockerPrefix, APathThatBeginsOrEndsWithTheOnlyBlankCannotComeFromALookUp)
{
    expectPath(" D:\\docker.exe ");
    EXPECT_EQ(getContainerCommandPrefix("c"), "D:\\docker.exe exec c");
}

TEST_F(DockerPrefix, AClientThatIsNotFoundGivesAnEmptyPath)
{
    for (int call = 0; call < 3; ++call) {
        host().expectRun({"where", "docker.exe"}, {1, "", ""});
    }
    EXPECT_EQ(getContainerCommandPrefix("c"), " exec c");
    EXPECT_EQ(getContainerArgumentsPrefix("c"), (Arguments{"", "exec", "c"}));
    EXPECT_EQ(getContainerExecutablePath(), "");
}

TEST_F(DockerPrefix, TheExecutableAlone)
{
    expectPath("D:\\docker.exe\r\n");
    EXPECT_EQ(getContainerExecutablePath(), "D:\\docker.exe");
    expectEvents({ranIn("c:", {"where", "docker.exe"}), "cvt_string_ustring D:\\docker.exe", "exists D:\\docker.exe"});
}

} // namespace
