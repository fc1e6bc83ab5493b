// Removing the distribution or the image.
#include "host_fixture.h"

#include "orb/lvm.h"

#include <stdexcept>

namespace {

using namespace fake;
using orb::lvm::clearDistroImage;

std::string line(const std::string& text)
{
    return commonDetail("clearDistroImage: " + text);
}

Events failed(const std::string& output, const std::string& error)
{
    return {commonError("clearDistroImage: distro's clear unsuccessful cout = " + output),
            commonError("clearDistroImage: distro's clear unsuccessful cerr = " + error)};
}

class RemovalWsl : public HostTest {
protected:
    RemovalWsl() { expectWslLookup(); }

    static Events removed(const std::string& name, int status)
    {
        return sequence({{line("COMMON")},
                         name == hub ? Events{askedRelease} : Events{},
                         {line("imageName = " + name)},
                         wslLookup(),
                         {line("commandPath = " + wslPath), ran({wslPath, "--unregister", name}),
                          line("status = " + std::to_string(status))}});
    }
};

TEST_F(RemovalWsl, TheDefaultDistroIsUnregistered)
{
    host().expectRun({wslPath, "--unregister", hub}, {0, "text", "text"});
    clearDistroImage("");
    expectEvents(removed(hub, 0));
}

TEST_F(RemovalWsl, AGivenDistroIsUnregistered)
{
    host().expectRun({wslPath, "--unregister", "mine"});
    clearDistroImage("mine");
    expectEvents(removed("mine", 0));
}

TEST_F(RemovalWsl, AFailureIsOnlyLogged)
{
    host().expectRun({wslPath, "--unregister", "mine"}, {1, "output\n", "no such distro\n"});
    clearDistroImage("mine");
    expectEvents(sequence({removed("mine", 1), failed("output\n", "no such distro\n")}));
}

TEST_F(RemovalWsl, ANegativeStatusIsAFailure)
{
    host().expectRun({wslPath, "--unregister", "mine"}, {-1, "", ""});
    clearDistroImage("mine");
    expectEvents(sequence({removed("mine", -1), failed("", "")}));
}

TEST_F(RemovalWsl, AnExceptionOfTheRunnerPassesThrough)
{
    host().expectRun({wslPath, "--unregister", "mine"}, []() -> RunResult { throw std::runtime_error("no"); });
    EXPECT_THROW(clearDistroImage("mine"), std::runtime_error);
}

class RemovalBetweenBackends : public HostTest {};

TEST_F(RemovalBetweenBackends, TheBackendIsAskedForAgainWhenTheCommandIsBuilt)
{
    host().expectRun({"where", "wsl.exe"}, [] {
        setVariable("USE_WSL", "0");
        return RunResult{0, wslPath + "\n", ""};
    });
    host().expectRun({wslPath, "-v"});
    host().expectRun({wslPath, "image", "rm", "--force", "mine"});
    clearDistroImage("mine");
}

class RemovalDocker : public HostTest {
protected:
    RemovalDocker() { setVariable("USE_WSL", ""); }

    Arguments command(const std::string& name) const { return {client, "image", "rm", "--force", name}; }

    Events removed(const std::string& name, int status) const
    {
        return sequence(
            {{line("COMMON")},
             name == hub ? Events{askedRelease} : Events{},
             {line("imageName = " + name)},
             dockerLookup(client),
             {line("commandPath = " + client), ran(command(name)), line("status = " + std::to_string(status))}});
    }

    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
};

TEST_F(RemovalDocker, TheDefaultImageIsRemoved)
{
    expectDockerLookup(client);
    host().expectRun(command(hub));
    clearDistroImage("");
    expectEvents(removed(hub, 0));
}

TEST_F(RemovalDocker, AGivenImageIsRemoved)
{
    expectDockerLookup(client);
    host().expectRun(command("zqkelp"), {0, "Untagged", "text"});
    clearDistroImage("zqkelp");
    expectEvents(removed("zqkelp", 0));
}

TEST_F(RemovalDocker, AnExceptionOfTheRunnerPassesThrough)
{
    expectDockerLookup(client);
    host().expectRun(command("zqkelp"), []() -> RunResult { throw std::runtime_error("no"); });
    EXPECT_THROW(clearDistroImage("zqkelp"), std::runtime_error);
}

TEST_F(RemovalDocker, AFailureIsOnlyLogged)
{
    expectDockerLookup(client);
    host().expectRun(command("zqkelp"), {1, "output", "no such image"});
    clearDistroImage("zqkelp");
    expectEvents(sequence({removed("zqkelp", 1), failed("output", "no such image")}));
}

TEST_F(RemovalDocker, AnEmptyPathIsRunAsItIs)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "image", "rm", "--force", "mine"}, {127, "", ""});
    clearDistroImage("mine");
    expectEvents(sequence({{line("COMMON"), line("imageName = mine"), ranIn("c:", {"where", "docker.exe"}),
                            line("commandPath = "), ran({"", "image", "rm", "--force", "mine"}), line("status = 127")},
                           failed("", "")}));
}

} // namespace
