// Starting and stopping the container.
#include "host_fixture.h"

#include "docker.h"
#include "orb/lvm.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm;

class ContainerUnderWsl : public HostTest {};

TEST_F(ContainerUnderWsl, StartAndStopSucceedWithoutRunningAnything)
{
    EXPECT_TRUE(startContainerIfNecessary("", ""));
    EXPECT_TRUE(startContainerIfNecessary("name", "image"));
    EXPECT_TRUE(stopContainerIfNecessary(""));
    EXPECT_TRUE(stopContainerIfNecessary("name"));
    setVariable("USE_WSL", "1");
    EXPECT_TRUE(startContainerIfNecessary("", ""));
    EXPECT_TRUE(stopContainerIfNecessary(""));
    expectEvents({});
}

class Container : public HostTest {
protected:
    Container()
    {
        setVariable("USE_WSL", "0");
        expectDockerLookup(client);
    }

    Arguments start(const std::string& name, const Arguments& extra, const std::string& image) const
    {
        Arguments arguments = {client, "run", "-di", "--network=host", "--name=" + name};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        arguments.push_back(image);
        return arguments;
    }

    Arguments stop(const std::string& name) const { return {client, "container", "rm", "-f", name}; }

    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
};

TEST_F(Container, StartsWithTheDefaultNames)
{
    host().expectRun(start("kelp_hub", {}, hub), {0, "id", "a warning"});
    EXPECT_TRUE(startContainerIfNecessary("", ""));
    expectEvents(sequence({dockerLookup(client), {askedRelease, ran(start("kelp_hub", {}, hub))}}));
}

TEST_F(Container, StartsWithTheGivenNames)
{
    host().expectRun(start("my container", {}, "my/image"));
    EXPECT_TRUE(startContainerIfNecessary("my container", "my/image"));
    expectEvents(sequence({dockerLookup(client), {ran(start("my container", {}, "my/image"))}}));
}

TEST_F(Container, AStartThatFailsIsFalse)
{
    host().expectRun(start("kelp_hub", {}, hub), {125, "", "name in use"});
    EXPECT_FALSE(startContainerIfNecessary("", ""));
    expectDockerLookup(client);
    host().expectRun(start("kelp_hub", {}, hub), {-1, "", ""});
    EXPECT_FALSE(startContainerIfNecessary("", ""));
    EXPECT_TRUE(host().eventsLike("log").empty());
}

TEST_F(Container, FurtherArgumentsGoBetweenNameAndImage)
{
    setVariable("AUX_DOCKER_ARGS", "  -v\t/a:/b  --rm ");
    host().expectRun(start("c", {"-v", "/a:/b", "--rm"}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
}

TEST_F(Container, FurtherArgumentsAreSplitInsideQuotes)
{
    setVariable("AUX_DOCKER_ARGS", "-e \"A=x y\"");
    host().expectRun(start("c", {"-e", "\"A=x", "y\""}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
}

TEST_F(Container, EmptyFurtherArgumentsAddNothing)
{
    setVariable("AUX_DOCKER_ARGS", "");
    host().expectRun(start("c", {}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
    setVariable("AUX_DOCKER_ARGS", " \t ");
    expectDockerLookup(client);
    host().expectRun(start("c", {}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
}

TEST_F(Container, FurtherArgumentsAreReadAtEachStart)
{
    setVariable("AUX_DOCKER_ARGS", "-a");
    host().expectRun(start("c", {"-a"}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
    setVariable("AUX_DOCKER_ARGS", "-b -c");
    expectDockerLookup(client);
    host().expectRun(start("c", {"-b", "-c"}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
    setVariable("AUX_DOCKER_ARGS", std::nullopt);
    expectDockerLookup(client);
    host().expectRun(start("c", {}, "i"));
    EXPECT_TRUE(startContainerIfNecessary("c", "i"));
}

TEST_F(Container, StopsTheDefaultContainer)
{
    host().expectRun(stop("kelp_hub"), {0, "kelp_hub", "a warning"});
    EXPECT_TRUE(stopContainerIfNecessary(""));
    expectEvents(sequence({dockerLookup(client), {ran(stop("kelp_hub"))}}));
}

TEST_F(Container, StopsTheGivenContainer)
{
    host().expectRun(stop("mine"));
    EXPECT_TRUE(stopContainerIfNecessary("mine"));
}

TEST_F(Container, AStopThatFailsIsFalse)
{
    host().expectRun(stop("mine"), {1, "", "no such container"});
    EXPECT_FALSE(stopContainerIfNecessary("mine"));
    expectDockerLookup(client);
    host().expectRun(stop("mine"), {-1, "", ""});
    EXPECT_FALSE(stopContainerIfNecessary("mine"));
}

TEST_F(Container, TheDockerSideTakesTheImageFirst)
{
    host().expectRun(start("container", {}, "image"));
    EXPECT_TRUE(detail::runHubContainer("image", "container"));
    expectDockerLookup(client);
    host().expectRun(stop("container"));
    EXPECT_TRUE(detail::removeHubContainer("container"));
}

class ContainerWithoutClient : public HostTest {
protected:
    ContainerWithoutClient() { setVariable("USE_WSL", "no"); }
};

TEST_F(ContainerWithoutClient, AnEmptyPathIsRunAsItIs)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "run", "-di", "--network=host", "--name=c", "i"}, {1, "", ""});
    EXPECT_FALSE(startContainerIfNecessary("c", "i"));
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "container", "rm", "-f", "c"}, {1, "", ""});
    EXPECT_FALSE(stopContainerIfNecessary("c"));
}

TEST_F(ContainerWithoutClient, ExceptionsOfTheRunnerPassThrough)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "container", "rm", "-f", "c"}, []() -> RunResult { throw std::runtime_error("no"); });
    EXPECT_THROW(stopContainerIfNecessary("c"), std::runtime_error);
}

} // namespace
