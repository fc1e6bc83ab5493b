// Which images and containers there are.
#include "host_fixture.h"

#include "docker.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using List = std::vector<std::string>;

class DockerQuery : public HostTest {
protected:
    Arguments containerQuery(const std::string& filter) const
    {
        return {client, "container", "ls", "-f", filter, "--format", "{{.Names}}"};
    }

    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
    const Arguments imageQuery = {client, "images", "--format", "{{.Repository}}"};
};

TEST_F(DockerQuery, RepositoriesComeInTheOrderOfTheOutput)
{
    expectImages(client, "zqkelp\nubuntu\n<none>\nzqkelp\n");
    EXPECT_EQ(getImageRepositories(), (List{"zqkelp", "ubuntu", "<none>", "zqkelp"}));
    expectEvents(images(client));
}

TEST_F(DockerQuery, RegistryAndPathAreDropped)
{
    expectImages(client, "mirror:5000/zq/zqkelp a/b/c\tend/ /start / x\r\n");
    EXPECT_EQ(getImageRepositories(), (List{"zqkelp", "c", "", "start", "", "x"}));
}

TEST_F(DockerQuery, OnlyASlashEndsThePath)
{
    expectImages(client, "a:b mirror:5000/c:d e\\f\n");
    EXPECT_EQ(getImageRepositories(), (List{"a:b", "c:d", "e\\f"}));
}

TEST_F(DockerQuery, OutputWithoutWordsGivesAnEmptyList)
{
    for (const char* output : {"", "\n", " \r\n\t \n"}) {
        expectImages(client, output);
        EXPECT_EQ(getImageRepositories(), List{});
    }
}

TEST_F(DockerQuery, AFailureGivesAnEmptyList)
{
    for (const int status : {1, 125, -1}) {
        expectDockerLookup(client);
        host().expectRun(imageQuery, {status, "zqkelp\n", "why"});
        EXPECT_EQ(getImageRepositories(), List{});
        expectDockerLookup(client);
        host().expectRun(containerQuery("ancestor=x"), {status, "name\n", "why"});
        EXPECT_EQ(getContainersByAncestor("x"), List{});
    }
    EXPECT_TRUE(host().eventsLike("log").empty());
}

TEST_F(DockerQuery, AnEmptyPathIsRunAsItIs)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "images", "--format", "{{.Repository}}"}, {127, "", ""});
    EXPECT_EQ(getImageRepositories(), List{});
    expectEvents({ranIn("c:", {"where", "docker.exe"}), ran({"", "images", "--format", "{{.Repository}}"})});
}

TEST_F(DockerQuery, ContainersOfAnImage)
{
    expectDockerLookup(client);
    host().expectRun(containerQuery("ancestor=zqkelp"), {0, "one\r\na/two\n\none\n", "ignored"});
    EXPECT_EQ(getContainersByAncestor("zqkelp"), (List{"one", "a/two", "one"}));
    expectEvents(sequence({dockerLookup(client), {ran(containerQuery("ancestor=zqkelp"))}}));
}

TEST_F(DockerQuery, ContainersOfTheDefaultImage)
{
    expectDockerLookup(client);
    host().expectRun(containerQuery("ancestor=kelp_hub_R9"), {0, "", ""});
    EXPECT_EQ(getContainersByAncestor(""), List{});
}

TEST_F(DockerQuery, ExceptionsOfTheRunnerPassThrough)
{
    expectDockerLookup(client);
    host().expectRun(imageQuery, []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(getImageRepositories(), std::runtime_error);
    expectDockerLookup(client);
    host().expectRun(containerQuery("ancestor=x"), []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(getContainersByAncestor("x"), std::runtime_error);
}

} // namespace
