// Names, errors, runs, removal and gateways, for any release, text and status.
#include "fake_frame.h"
#include "story.h"

#include "frame.h"
#include "orb/lvm.h"
#include "runner.h"

#include <memory>

namespace {

using namespace fake;
using namespace orb::lvm;

class FrameRule : public RuleTest {
protected:
    static Arguments argumentsOf(const foundation::core::except::IMsgIDException& error)
    {
        Arguments found = {error.message().catalogue, error.message().identifier};
        for (const auto& argument : error.message().arguments) {
            found.push_back(argument.text());
        }
        return found;
    }
};

TEST_P(FrameRule, AnyNameIsFollowedByTheRelease)
{
    forManyValues(100, [this] {
        const std::string name = any.oneIn(4) ? withRelease(any.text()) : any.oneIn(2) ? any.output() : any.text();
        EXPECT_EQ(addKVRelease(name), withRelease(name));
    });
    EXPECT_EQ(detail::hubTag(), "kelp_hub" + withRelease("kelp_hub"));
    EXPECT_EQ(addKVRelease("kelp_hub"), withRelease("kelp_hub"));
    EXPECT_EQ(detail::hubTag(), "kelp_hub" + withRelease("kelp_hub"));
    expectEvents({askedRelease});
}

TEST_P(FrameRule, TheArchivesAreBelowAnyRoot)
{
    host().nativeForm = wide(any.textOrNothing());
    const std::u16string begin = host().nativeForm.empty() ? u"" : host().nativeForm + u"/";
    EXPECT_EQ(getContainerTarsDirectory(), begin + u"toolbox/shared/kavori/kelp/tar_files");
    EXPECT_EQ(host().eventsLike("get_install_path").size(), 1U);
}

TEST_P(FrameRule, AnErrorAndItsCloneHaveAllArgumentsAsTheyAre)
{
    using namespace orb::container_support;
    forManyValues(50, [this] {
        const std::string archive = any.output();
        const std::string name = any.textOrNothing();
        const std::string printed = any.output();
        try {
            detail::throwError(TAR_FILE_LOAD_ERROR{}, archive, name, printed);
        } catch (const foundation::core::except::IMsgIDException& error) {
            const Arguments expected = {"orb:container_support", "TAR_FILE_LOAD_ERROR", archive, name, printed};
            EXPECT_EQ(argumentsOf(error), expected);
            const std::unique_ptr<const boost::exception_detail::clone_base> clone(
                dynamic_cast<const boost::exception_detail::clone_base&>(error).clone());
            EXPECT_EQ(argumentsOf(dynamic_cast<const foundation::core::except::IMsgIDException&>(*clone)), expected);
        }
    });
}

TEST_P(FrameRule, ARunIsHandedOnAsItIs)
{
    forManyValues(90, [this] {
        Arguments arguments;
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            arguments.push_back(any.oneIn(3) ? any.output() : any.textOrNothing());
        }
        const RunResult result = anyResult();
        const std::string directory = any.textOrNothing();
        Story story;
        story.runs(arguments, result, directory);
        const RunResult found = any.oneIn(2) && directory.empty() ? detail::runCommand(arguments)
                                                                  : detail::runCommand(arguments, directory);
        EXPECT_EQ(found.status, result.status);
        EXPECT_EQ(found.standardOutput, result.standardOutput);
        EXPECT_EQ(found.standardError, result.standardError);
        story.expectTold();
    });
}

TEST_P(FrameRule, AnyDistributionOrImageIsRemovedAndAFailureOnlyLogged)
{
    const bool docker = any.oneIn(2);
    if (docker) {
        setVariable("USE_WSL", "0");
    } else {
        findWsl();
    }
    forManyValues(90, [this, docker] {
        chooseMasks();
        const std::string client = any.oneIn(4) ? "" : "D:\\docker.exe";
        host().fileTypes = {{wide(client), std::filesystem::file_type::regular}};
        const std::string given = any.textOrNothing();
        const std::string name = given.empty() ? withRelease("kelp_hub") : given;
        const RunResult result = anyResult();

        Story story;
        story.detail(commonChannel, "clearDistroImage: COMMON");
        story.detail(commonChannel, "clearDistroImage: imageName = " + name);
        if (docker) {
            story.runs({"where", "docker.exe"}, {client.empty() ? 1 : 0, client, ""}, "c:");
        } else {
            pathUsed(story);
        }
        story.detail(commonChannel, "clearDistroImage: commandPath = " + (docker ? client : wsl));
        story.runs(docker ? Arguments{client, "image", "rm", "--force", name} : Arguments{wsl, "--unregister", name},
                   result);
        story.detail(commonChannel, "clearDistroImage: status = " + std::to_string(result.status));
        if (result.status != 0) {
            story.error(commonChannel, "clearDistroImage: distro's clear unsuccessful cout = " + result.standardOutput);
            story.error(commonChannel, "clearDistroImage: distro's clear unsuccessful cerr = " + result.standardError);
        }
        clearDistroImage(given);
        story.expectTold();
    });
}

TEST_P(FrameRule, TheCheckOfWslTellsAnyFailureFromSuccess)
{
    if (any.oneIn(2)) {
        setVariable("USE_WSL", "0");
    }
    findWsl();
    forManyValues(90, [this] {
        chooseMasks();
        const RunResult result = anyResult();
        Story story;
        pathUsed(story);
        story.runs({wsl, "-l", "-q"}, result);
        hxArray* outputs[] = {nullptr};
        kelp_container_wsl_check(static_cast<int>(any.below(3)), outputs, 0, nullptr);
        ASSERT_NE(outputs[0], nullptr);
        EXPECT_EQ(outputs[0]->scalar, result.status == 0 ? 0.0 : -3.0);
        hxDestroyArray(outputs[0]);
        story.expectTold();
    });
}

TEST_P(FrameRule, TheFirstInputOfTheSetupIsTheArchiveIfItIsText)
{
    setVariable("USE_WSL", "0");
    forManyValues(150, [this] {
        host().fileTypes = {{u"D:\\docker.exe", std::filesystem::file_type::regular}};
        const std::vector<hxClass> classes = {hxClass::character, hxClass::character, hxClass::character,
                                              hxClass::floating, hxClass::cell};
        hxArray first{"first", any.oneOf(classes), wide(any.text()), 1};
        hxArray second{"second", hxClass::character, u"second", 0};
        hxArray* inputs[] = {any.oneIn(5) ? nullptr : &first, &second};
        const int count = static_cast<int>(any.below(5)) - 1;
        const bool given = count > 0 && inputs[0] != nullptr && first.elementClass == hxClass::character;
        const std::u16string path = given ? first.text : u"";
        const std::u16string expected = path.empty() ? getContainerTarsDirectory() + u"/kelp_hub_docker.tar" : path;
        host().fileTypes[getContainerTarsDirectory() + u"/kelp_hub_docker.tar.gz"] =
            std::filesystem::file_type::not_found;
        host().fileTypes[expected] = std::filesystem::file_type::regular;
        const std::string client = "D:\\docker.exe";
        const RunResult lookUp = {0, client, ""};
        host().expectRun({"where", "docker.exe"}, lookUp);
        host().expectRun({"where", "docker.exe"}, lookUp);
        host().expectRun({client, "images", "--format", "{{.Repository}}"});
        host().expectRun({client, "load", "-i", utf8(expected)});
        host().expectRun({"where", "docker.exe"}, lookUp);
        host().expectRun({client, "images", "--format", "{{.Repository}}"}, {0, withRelease("kelp_hub"), ""});
        hxArray untouched{"untouched", hxClass::floating, {}, 5};
        hxArray* outputs[] = {&untouched};
        try {
            kelp_container_setup(static_cast<int>(any.below(2)), outputs, count, inputs);
        } catch (const foundation::core::except::IMsgIDException&) {
            // A release of several words is never listed.
        }
        EXPECT_EQ(outputs[0], &untouched);
        EXPECT_EQ(untouched.scalar, 5);
        host().verify();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, FrameRule, testing::Range(500U, 504U));

} // namespace
