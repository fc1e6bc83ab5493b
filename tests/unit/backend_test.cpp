// The backend is asked for at each call, by each function that depends on it.
#include "host_fixture.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

namespace {

using namespace fake;
using namespace orb::lvm;

// An installed WSL with the hub distribution, and no Docker client.
RunResult answer(const Arguments& arguments)
{
    if (arguments == Arguments{"where", "wsl.exe"}) {
        return {0, wslPath, ""};
    }
    if (arguments.front() != wslPath) {
        return {1, "", ""};
    }
    return {0, arguments[1] == "--list" ? hub : "", ""};
}

class Backend : public HostTest {
protected:
    Backend() { host().anyRun = answer; }

    // Calls it twice, and chooses Docker in between, which looks for its client.
    template <class Call>
    static void expectChange(const Call& call)
    {
        call();
        EXPECT_TRUE(host().eventsLike("run [where] [docker.exe]").empty());
        setVariable("USE_WSL", "0");
        call();
        EXPECT_FALSE(host().eventsLike("run [where] [docker.exe]").empty());
    }
};

TEST_F(Backend, OfProvisioningMayChangeWhileTheVariableIsUnset)
{
    expectChange([] {
        try {
            importFromTarIfNecessary("", "", false);
        } catch (const foundation::core::except::IMsgIDException& error) {
            EXPECT_EQ(error.message().identifier, "DOCKER_NOT_AVAILABLE");
        }
    });
}

TEST_F(Backend, OfRemovalMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { clearDistroImage(""); });
}

TEST_F(Backend, OfTheStartMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { startContainerIfNecessary("", ""); });
}

TEST_F(Backend, OfTheStopMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { stopContainerIfNecessary(""); });
}

TEST_F(Backend, OfTheCommandPrefixMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { getContainerCommandPrefix(""); });
}

TEST_F(Backend, OfTheArgumentsPrefixMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { getContainerArgumentsPrefix(""); });
}

TEST_F(Backend, OfTheExecutableMayChangeWhileTheVariableIsUnset)
{
    expectChange([] { getContainerExecutablePath(); });
}

TEST_F(Backend, OfTheSharedEnvironmentMayChangeWhileTheVariableIsUnset)
{
    Arguments args = {"img"};
    Environment env = {{"LD_LIBRARY_PATH", ""}};
    applySharedEnvironment(args, env);
    EXPECT_EQ(args, Arguments{"img"});
    setVariable("USE_WSL", "0");
    applySharedEnvironment(args, env);
    EXPECT_GT(args.size(), 1U);
}

} // namespace
