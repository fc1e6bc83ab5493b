// The environment that a command inside shares.
#include "host_fixture.h"

#include "orb/lvm.h"

#include <algorithm>
#include <utility>

namespace {

using namespace fake;
using orb::lvm::applySharedEnvironment;

const std::string runtime = "/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64";

class SharedEnvironmentWsl : public HostTest {
protected:
    void TearDown() override
    {
        EXPECT_EQ(args, (Arguments{"run", "img"}));
        expectEvents({});
        HostTest::TearDown();
    }

    Arguments args = {"run", "img"};
};

TEST_F(SharedEnvironmentWsl, AnEmptyMapGainsTheLibraryPathAndItsName)
{
    Environment env;
    applySharedEnvironment(args, env);
    EXPECT_EQ(env, (Environment{{"LD_LIBRARY_PATH", runtime}, {"WSLENV", "LD_LIBRARY_PATH"}}));
}

TEST_F(SharedEnvironmentWsl, NamesAreListedInOrderWithTheirFlags)
{
    Environment env = {{"B/u", "2"}, {"A", "1"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env, (Environment{
                       {"A", "1"}, {"B/u", "2"}, {"LD_LIBRARY_PATH", runtime}, {"WSLENV", "A:B/u:LD_LIBRARY_PATH"}}));
}

TEST_F(SharedEnvironmentWsl, UpperCaseNamesComeFirst)
{
    Environment env = {{"a", "1"}, {"Z", "2"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.at("WSLENV"), "LD_LIBRARY_PATH:Z:a");
}

TEST_F(SharedEnvironmentWsl, TheCallersOwnListWins)
{
    Environment env = {{"A", "1"}, {"WSLENV", "X"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env, (Environment{{"A", "1"}, {"LD_LIBRARY_PATH", runtime}, {"WSLENV", "X"}}));
}

TEST_F(SharedEnvironmentWsl, AnEmptyListOfTheCallerWinsToo)
{
    Environment env = {{"WSLENV", ""}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.at("WSLENV"), "");
}

TEST_F(SharedEnvironmentWsl, TheCallersLibraryPathStaysInFront)
{
    Environment env = {{"LD_LIBRARY_PATH", "/x"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env, (Environment{{"LD_LIBRARY_PATH", "/x:" + runtime}, {"WSLENV", "LD_LIBRARY_PATH"}}));
}

TEST_F(SharedEnvironmentWsl, TheLibraryPathIsAppendedHoweverTheCallersEnds)
{
    Environment env = {{"LD_LIBRARY_PATH", "/x:" + runtime}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.at("LD_LIBRARY_PATH"), "/x:" + runtime + ":" + runtime);
}

TEST_F(SharedEnvironmentWsl, EachKeyIsListedAsItStands)
{
    Environment env = {{"A:B", "1"}, {"C D", "2"}, {"E=", "3"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.at("WSLENV"), "A:B:C D:E=:LD_LIBRARY_PATH");
}

TEST_F(SharedEnvironmentWsl, AnEmptyNameIsListedLikeAnyOther)
{
    Environment env = {{"", "1"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.at("WSLENV"), "LD_LIBRARY_PATH");
}

TEST_F(SharedEnvironmentWsl, OneSelectsWsl)
{
    setVariable("USE_WSL", "1");
    Environment env;
    applySharedEnvironment(args, env);
    EXPECT_EQ(env.count("WSLENV"), 1U);
}

class SharedEnvironmentDocker : public HostTest {
protected:
    SharedEnvironmentDocker() { setVariable("USE_WSL", "true"); }

    static Arguments applied(Arguments args, Environment env)
    {
        applySharedEnvironment(args, env);
        return args;
    }
};

TEST_F(SharedEnvironmentDocker, OptionsGoInFrontOfTheLastArgument)
{
    EXPECT_EQ(applied({"run", "img"}, {}), (Arguments{"run", "-e", "LD_LIBRARY_PATH=" + runtime, "img"}));
    EXPECT_EQ(applied({"a", "b", "c"}, {{"Z", ""}, {"A", "1 2"}}),
              (Arguments{"a", "b", "-e", "A=1 2", "-e", "LD_LIBRARY_PATH=" + runtime, "-e", "Z=", "c"}));
}

TEST_F(SharedEnvironmentDocker, AllOptionsComeBeforeASingleArgument)
{
    EXPECT_EQ(applied({"img"}, {{"A", "1"}}), (Arguments{"-e", "A=1", "-e", "LD_LIBRARY_PATH=" + runtime, "img"}));
}

TEST_F(SharedEnvironmentDocker, AnEmptyListStaysEmpty)
{
    Arguments args;
    Environment env = {{"A", "1"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(args, Arguments{});
    EXPECT_EQ(env, (Environment{{"A", "1"}, {"LD_LIBRARY_PATH", runtime}}));
}

TEST_F(SharedEnvironmentDocker, TheMapKeepsItsKeysAndValues)
{
    Arguments args = {"img"};
    Environment env = {{"FOO/u", "1"}, {"LD_LIBRARY_PATH", "/x"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(args, (Arguments{"-e", "FOO=1", "-e", "LD_LIBRARY_PATH=/x:" + runtime, "img"}));
    EXPECT_EQ(env, (Environment{{"FOO/u", "1"}, {"LD_LIBRARY_PATH", "/x:" + runtime}}));
}

TEST_F(SharedEnvironmentDocker, AnEmptyLibraryPathKeepsItsColon)
{
    EXPECT_EQ(applied({"img"}, {{"LD_LIBRARY_PATH", ""}}), (Arguments{"-e", "LD_LIBRARY_PATH=:" + runtime, "img"}));
}

TEST_F(SharedEnvironmentDocker, OnlyASlashBeforeTheLastLetterIsAFlag)
{
    const std::pair<const char*, const char*> cases[] = {
        {"FOO/u", "FOO"}, {"a/b", "a"}, {"AB/", "AB/"},   {"a/", "a/"},          {"/a", "/a"},
        {"x", "x"},       {"", ""},     {"A/bc", "A/bc"}, {"A/b/c", "A/b"},      {"//x", "/"},
        {"///", "/"},     {"A//", "A"}, {"PATH", "PATH"}, {"PATH/lp", "PATH/lp"}};
    for (const auto& [key, name] : cases) {
        const Arguments args = applied({"img"}, {{key, "v"}, {"LD_LIBRARY_PATH", ""}});
        EXPECT_EQ(std::count(args.begin(), args.end(), std::string(name) + "=v"), 1) << key;
    }
}

TEST_F(SharedEnvironmentDocker, NoWslListIsMade)
{
    Arguments args = {"img"};
    Environment env = {{"WSLENV", "X"}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(args, (Arguments{"-e", "LD_LIBRARY_PATH=" + runtime, "-e", "WSLENV=X", "img"}));
    EXPECT_EQ(env.at("WSLENV"), "X");
}

} // namespace
