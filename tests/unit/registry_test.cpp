// Pulling the image from the registry.
#include "host_fixture.h"

#include "docker.h"
#include "frame.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;

// What is written to standard output while it lives.
class CapturedOutput {
public:
    CapturedOutput() : before_(std::cout.rdbuf(&buffer_)) {}
    ~CapturedOutput() { std::cout.rdbuf(before_); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string text() const { return buffer_.str(); }
    int flushes() const { return buffer_.flushes; }

private:
    struct Buffer : std::stringbuf {
        int sync() override
        {
            ++flushes;
            return 0;
        }
        int flushes = 0;
    };

    Buffer buffer_;
    std::streambuf* before_;
};

class Registry : public HostTest {
protected:
    Registry()
    {
        setVariable("USE_DOCKER_REPOSITORY", "1");
        host().nativeForm = folder.path().u16string();
    }

    Arguments pull(const std::string& reference) const { return {client, "pull", "-q", reference}; }
    Arguments tag(const std::string& reference) const { return {client, "tag", reference, hub}; }

    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
    CapturedOutput output;
};

TEST_F(Registry, NothingIsTriedUnlessEnabled)
{
    setVariable("USE_DOCKER_REPOSITORY", std::nullopt);
    EXPECT_FALSE(pullImageFromRegistry("repository", "name", "tag"));
    for (const char* value : {"", "0", "true", "1 ", "11"}) {
        setVariable("USE_DOCKER_REPOSITORY", value);
        EXPECT_FALSE(pullImageFromRegistry("repository", "name", "tag"));
    }
    expectEvents({});
    EXPECT_EQ(output.text(), "");
}

TEST_F(Registry, TheImageIsPulledAndTagged)
{
    expectDockerLookup(client);
    host().expectRun(pull("repository/name:tag"), {0, "digest", "a warning"});
    host().expectRun(tag("repository/name:tag"), {0, "x", "a warning"});
    EXPECT_TRUE(pullImageFromRegistry("repository", "name", "tag"));
    expectEvents(sequence(
        {dockerLookup(client), {ran(pull("repository/name:tag")), askedRelease, ran(tag("repository/name:tag"))}}));
    EXPECT_EQ(output.text(), "");
}

TEST_F(Registry, AFailingPullIsReportedOnStandardOutput)
{
    for (const int status : {1, -1}) {
        CapturedOutput captured;
        expectDockerLookup(client);
        host().expectRun(pull("r/n:t"), {status, "not shown", "manifest unknown"});
        EXPECT_FALSE(pullImageFromRegistry("r", "n", "t"));
        EXPECT_EQ(captured.text(), "ERROR in pullImageFromRegistry: manifest unknown\n");
        EXPECT_EQ(captured.flushes(), 1);
        expectEvents(sequence({dockerLookup(client), {ran(pull("r/n:t"))}}));
    }
}

TEST_F(Registry, AFailingTagIsReportedOnStandardOutput)
{
    expectDockerLookup(client);
    host().expectRun(pull("r/n:t"), {0, "", "pull warning"});
    host().expectRun(tag("r/n:t"), {1, "not shown", "no such image\n"});
    EXPECT_FALSE(pullImageFromRegistry("r", "n", "t"));
    EXPECT_EQ(output.text(), "ERROR in pullImageFromRegistry: no such image\n\n");
    EXPECT_EQ(output.flushes(), 1);
}

TEST_F(Registry, AFailingPullThatPrintsNoErrorCountsAsDone)
{
    expectDockerLookup(client);
    host().expectRun(pull("r/n:t"), {1, "text", ""});
    EXPECT_TRUE(pullImageFromRegistry("r", "n", "t"));
    EXPECT_EQ(output.text(), "");
}

TEST_F(Registry, AFailingTagThatPrintsNoErrorCountsAsDone)
{
    expectDockerLookup(client);
    host().expectRun(pull("r/n:t"), {0, "", "pull warning"});
    host().expectRun(tag("r/n:t"), {1, "text", ""});
    EXPECT_TRUE(pullImageFromRegistry("r", "n", "t"));
    EXPECT_EQ(output.text(), "");
}

TEST_F(Registry, AnEmptyClientPathIsRunAsItIs)
{
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "pull", "-q", "r/n:t"}, {1, "", "no client"});
    EXPECT_FALSE(pullImageFromRegistry("r", "n", "t"));
}

TEST_F(Registry, AnExceptionOfTheRunnerPassesThrough)
{
    expectDockerLookup(client);
    host().expectRun(pull("r/n:t"), []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(pullImageFromRegistry("r", "n", "t"), std::runtime_error);
}

class RegistryProvisioning : public Registry {
protected:
    RegistryProvisioning()
    {
        expectDockerLookup(client);
        expectImages(client, "");
    }

    void expectPull(const RunResult& result)
    {
        expectDockerLookup(client);
        host().expectRun(pull(reference), result);
    }

    const std::string reference = "zqkelp/kelp_hubkelp_hub_R9:kelp_hubkelp_hub_R9";
    const std::string archive = folder.makeFile("archive");
};

TEST_F(RegistryProvisioning, APulledImageNeedsNoLoad)
{
    expectPull({0, "", ""});
    host().expectRun(tag(reference));
    expectImages(client, hub);
    dockerImportFromTarIfNecessary(archive, "", false);
    EXPECT_EQ(host().eventsLike(ran({client, "load"})).size(), 0U);
    const Events runs = host().eventsLike("run [" + client + "]");
    EXPECT_EQ(runs, (Events{ran({client, "images", "--format", "{{.Repository}}"}), ran(pull(reference)),
                            ran(tag(reference)), ran({client, "images", "--format", "{{.Repository}}"})}));
}

TEST_F(RegistryProvisioning, AFailedPullFallsBackToTheArchive)
{
    expectPull({1, "", "manifest unknown"});
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, hub);
    dockerImportFromTarIfNecessary(archive, "", false);
    EXPECT_EQ(output.text(), "ERROR in pullImageFromRegistry: manifest unknown\n");
}

TEST_F(RegistryProvisioning, APulledImageUnderAnotherNameIsMissing)
{
    expectPull({0, "", ""});
    host().expectRun(tag(reference));
    expectImages(client, hub);
    using Missing = foundation::core::except::Exception<orb::container_support::IMAGE_NOT_EXIST, std::exception, void>;
    try {
        dockerImportFromTarIfNecessary(archive, "mine", false);
        ADD_FAILURE() << "no error";
    } catch (const Missing& error) {
        EXPECT_EQ(error.message().arguments.at(0).text(), "mine");
    }
}

TEST_F(RegistryProvisioning, APullThatFailsWithoutAWordLeavesTheImageMissing)
{
    expectPull({1, "", ""});
    expectImages(client, "");
    EXPECT_THROW(dockerImportFromTarIfNecessary(archive, "", false), foundation::core::except::IMsgIDException);
}

TEST_F(RegistryProvisioning, TheArchiveIsRequiredAllTheSame)
{
    using Missing =
        foundation::core::except::Exception<orb::container_support::TAR_FILE_NOT_AVAILABLE, std::exception, void>;
    EXPECT_THROW(dockerImportFromTarIfNecessary(folder.entry("missing"), "", false), Missing);
}

TEST_F(RegistryProvisioning, WithoutAReleaseTheReferenceIsTheStemTwice)
{
    host().release = [] { return nullptr; };
    expectDockerLookup(client);
    const std::string bare = "zqkelp/kelp_hubkelp_hub:kelp_hubkelp_hub";
    host().expectRun(pull(bare));
    host().expectRun({client, "tag", bare, "kelp_hub"});
    expectImages(client, "kelp_hub");
    dockerImportFromTarIfNecessary(archive, "", false);
}

} // namespace
