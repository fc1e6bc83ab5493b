// Prefixes, and the container's start and end, for any path, name, image and further arguments.
#include "story.h"

#include "orb/lvm.h"

namespace {

using namespace fake;
using namespace orb::lvm;

std::string inQuotes(const std::string& path)
{
    return path.find(' ') == std::string::npos ? path : "\"" + path + "\"";
}

class PrefixRule : public RuleTest {};

TEST_P(PrefixRule, UnderWslTheTargetIsTheDefaultDistributionWhateverTheName)
{
    findWsl();
    const std::string distribution = withRelease("kelp_hub");
    forManyValues(20, [this, &distribution] {
        chooseMasks();
        Story story;
        for (int call = 0; call < 3; ++call) {
            pathUsed(story);
        }
        EXPECT_EQ(getContainerCommandPrefix(any.textOrNothing()), inQuotes(wsl) + " -d " + distribution + " --exec ");
        EXPECT_EQ(getContainerArgumentsPrefix(any.textOrNothing()), (Arguments{wsl, "-d", distribution, "--exec"}));
        EXPECT_EQ(getContainerExecutablePath(), wsl);
        story.expectTold();
    });
}

TEST_P(PrefixRule, UnderWslNothingIsStartedOrStopped)
{
    setVariable("AUX_DOCKER_ARGS", "-v");
    forManyValues(20, [this] {
        EXPECT_TRUE(startContainerIfNecessary(any.textOrNothing(), any.textOrNothing()));
        EXPECT_TRUE(stopContainerIfNecessary(any.textOrNothing()));
        expectEvents({});
    });
}

class ContainerRule : public RuleTest {
protected:
    ContainerRule() { setVariable("USE_WSL", any.oneOf(std::vector<std::string>{"", "0", "2", "1 "})); }

    // The look-up finds this client, or none.
    std::string findClient(Story& story)
    {
        std::string client = any.oneIn(6) ? "" : trimmedText(any.text());
        if (client.find('\n') != std::string::npos || client.find("bin\\win64") != std::string::npos) {
            client = "D:\\docker.exe";
        }
        const std::int32_t status = client.empty() ? 1 : 0;
        host().fileTypes = {{wide(client), std::filesystem::file_type::regular}};
        story.runs({"where", "docker.exe"}, {status, client + any.blanks(), any.text()}, "c:");
        return client;
    }

    // Further arguments: ASCII, since the C runtime has the environment in the system's code page.
    std::string furtherArguments()
    {
        std::string value;
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            value += any.oneIn(4) ? "" : any.blanks();
            value +=
                any.oneOf(std::vector<std::string>{"-v", "-v", "--rm", "--name=x", "\"a", "b\"", "'a b'", "a\\ b",
                                                   "x=y", "$HOME", "%PATH%", ";", "--network=host", "-e", "kelp_hub"});
        }
        return any.oneIn(3) ? value + any.blanks() : value;
    }
};

TEST_P(ContainerRule, ThePrefixesNameTheContainer)
{
    forManyValues(80, [this] {
        const std::string given = any.textOrNothing();
        const std::string name = given.empty() ? "kelp_hub" : given;
        Story story;
        std::string client = findClient(story);
        EXPECT_EQ(getContainerCommandPrefix(given), inQuotes(client) + " exec " + name);
        client = findClient(story);
        EXPECT_EQ(getContainerArgumentsPrefix(given), (Arguments{client, "exec", name}));
        client = findClient(story);
        EXPECT_EQ(getContainerExecutablePath(), client);
        story.expectTold();
    });
}

TEST_P(ContainerRule, TheStartHasTheFurtherArgumentsWordByWord)
{
    forManyValues(110, [this] {
        const std::string further = furtherArguments();
        const bool isSet = !any.oneIn(5);
        setVariable("AUX_DOCKER_ARGS", isSet ? std::optional(further) : std::nullopt);
        const std::string container = any.textOrNothing();
        const std::string image = any.textOrNothing();
        const RunResult result = anyResult();

        Story story;
        Arguments command = {findClient(story), "run", "-di", "--network=host",
                             "--name=" + (container.empty() ? "kelp_hub" : container)};
        const std::vector<std::string> words = wordsOf(isSet ? further : "");
        command.insert(command.end(), words.begin(), words.end());
        command.push_back(image.empty() ? withRelease("kelp_hub") : image);
        story.runs(command, result);
        EXPECT_EQ(startContainerIfNecessary(container, image), result.status == 0);
        story.expectTold();
    });
}

TEST_P(ContainerRule, TheEndIsAForcedRemoval)
{
    setVariable("AUX_DOCKER_ARGS", "-v");
    forManyValues(80, [this] {
        const std::string container = any.textOrNothing();
        const RunResult result = anyResult();
        Story story;
        story.runs({findClient(story), "container", "rm", "-f", container.empty() ? "kelp_hub" : container}, result);
        EXPECT_EQ(stopContainerIfNecessary(container), result.status == 0);
        story.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, PrefixRule, testing::Range(100U, 104U));
INSTANTIATE_TEST_SUITE_P(Seed, ContainerRule, testing::Range(110U, 113U));

} // namespace
