// The functions that the host's interpreter calls, and the provisioning entry behind the first.
#include "fake_frame.h"
#include "host_fixture.h"

#include "frame.h"
#include "orb/lvm.h"

#include <stdexcept>
#include <system_error>

namespace {

using namespace fake;
using namespace orb::lvm;

std::string line(const std::string& text)
{
    return wslDetail("importFromTarIfNecessary: " + text);
}

// A call of a gateway with the given inputs and room for one output, which must stay as it was.
void callWithoutOutput(void (*gateway)(int, hxArray**, int, hxArray**), int outputCount, int inputCount,
                       std::vector<hxArray*> inputs)
{
    hxArray untouched{"untouched", hxClass::floating, {}, 5};
    hxArray* outputs[] = {&untouched};
    gateway(outputCount, outputs, inputCount, inputs.empty() ? nullptr : inputs.data());
    EXPECT_EQ(outputs[0], &untouched);
    EXPECT_EQ(untouched.scalar, 5);
}

class Setup : public HostTest {
protected:
    Setup()
    {
        host().nativeForm = folder.path().u16string();
        host().temporaryName = (folder.path() / "new").u16string();
        expectWslLookup();
        expectListing(false, {0, "", ""});
    }

    void expectImport(const std::string& archive)
    {
        const std::u16string& location = host().temporaryName;
        host().expectRun({wslPath, "--import", hub, narrow(location), archive, "--version", "2"});
    }

    void expectDefaultArchive()
    {
        expectImport(folder.entry("toolbox/shared/kavori/kelp/tar_files/kelp_hub_distro.tar"));
    }

    TestFolder folder;
    hxArray text{"text", hxClass::character, u"C:\\archive", 0};
    hxArray other{"other", hxClass::character, u"C:\\other", 0};
    hxArray number{"number", hxClass::floating, u"C:\\number", 1};
    hxArray cell{"cell", hxClass::cell, u"C:\\cell", 1};
};

TEST_F(Setup, WithoutInputsTheDefaultArchiveIsUsed)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 1, 0, {});
    EXPECT_TRUE(host().eventsLike("hxIsChar").empty());
}

TEST_F(Setup, InputsBeyondTheCountAreNotLookedAt)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 0, 0, {&text});
    EXPECT_TRUE(host().eventsLike("hxIsChar").empty());
}

TEST_F(Setup, ANegativeCountMeansNoInputs)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 0, -1, {&text});
}

TEST_F(Setup, ANullInputMeansTheDefaultArchive)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 0, 1, {nullptr});
}

TEST_F(Setup, ANumberMeansTheDefaultArchive)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 0, 1, {&number});
    EXPECT_TRUE(host().eventsLike("get_ustring").empty());
}

TEST_F(Setup, ACellFollowedByATextMeansTheDefaultArchive)
{
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 1, 2, {&cell, &text});
    EXPECT_EQ(host().eventsLike("hxIsChar"), Events{"hxIsChar cell"});
}

TEST_F(Setup, ATextIsTheArchive)
{
    expectImport("C:\\archive");
    callWithoutOutput(kelp_container_setup, 1, 2, {&text, &other});
    const Events begin = {"hxIsChar text", "get_ustring text", "cvt_ustring_utf8 C:\\archive", line("WSL")};
    Events events = host().events();
    events.resize(begin.size());
    EXPECT_EQ(begin, events);
    EXPECT_TRUE(host().eventsLike("hxIsChar other").empty());
}

TEST_F(Setup, TheTextBecomesUtf8)
{
    text.text = u"C:\\\u00E4\u65E5";
    expectImport("C:\\\xC3\xA4\xE6\x97\xA5");
    callWithoutOutput(kelp_container_setup, 0, 1, {&text});
}

TEST_F(Setup, BlanksBelongToTheText)
{
    text.text = u" \tC:\\archive \n";
    expectImport(" \tC:\\archive \n");
    callWithoutOutput(kelp_container_setup, 0, 1, {&text});
}

TEST_F(Setup, AZeroCharacterDoesNotEndTheText)
{
    text.text = std::u16string(u"a\0b", 3);
    expectImport(std::string("a\0b", 3));
    callWithoutOutput(kelp_container_setup, 0, 1, {&text});
}

TEST_F(Setup, AnEmptyTextMeansTheDefaultArchive)
{
    text.text.clear();
    expectDefaultArchive();
    callWithoutOutput(kelp_container_setup, 0, 1, {&text});
}

TEST_F(Setup, ErrorsPassToTheInterpreter)
{
    host().expectRun({wslPath, "--import", hub, narrow(host().temporaryName), "C:\\archive", "--version", "2"},
                     {1, "", ""});
    hxArray* inputs[] = {&text};
    EXPECT_THROW(kelp_container_setup(0, nullptr, 1, inputs), foundation::core::except::IMsgIDException);
}

class SetupWithoutText : public HostTest {};

TEST_F(SetupWithoutText, AnIllFormedTextIsASystemErrorBeforeAnythingIsRun)
{
    hxArray text{"text", hxClass::character, u"C:\\\xD800 archive", 0};
    hxArray* inputs[] = {&text};
    EXPECT_THROW(kelp_container_setup(0, nullptr, 1, inputs), std::system_error);
    EXPECT_TRUE(host().eventsLike("run").empty());
}

class SetupDocker : public HostTest {};

TEST_F(SetupDocker, TheArchiveIsLoadedUnderTheDefaultName)
{
    setVariable("USE_WSL", "0");
    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
    const std::string archive = folder.makeFile("archive");
    expectDockerLookup(client);
    expectImages(client, "");
    host().expectRun({client, "load", "-i", archive});
    expectImages(client, hub);
    hxArray text{"text", hxClass::character, wide(archive), 0};
    hxArray* inputs[] = {&text};
    kelp_container_setup(0, nullptr, 1, inputs);
    EXPECT_TRUE(host().eventsLike("log orb:lvm:wsl").empty());
}

class ProvisioningEntry : public HostTest {};

TEST_F(ProvisioningEntry, UnderWslTheTwoNamesAreHandedOn)
{
    expectWslLookup();
    expectListing(false, {0, "mine", ""});
    expectListing(true, {0, "mine", ""});
    importFromTarIfNecessary("archive", "mine", true);
    expectEvents(sequence({{line("WSL")},
                           wslLookup(),
                           {line("wslPath = " + wslPath), line("localDistroName = mine")},
                           listing(false, 0),
                           {line("kelp distro exists 1")},
                           listing(true, 0),
                           {askedInterfaces, line("(1) wslIPAddress =  ")}}));
}

TEST_F(ProvisioningEntry, UnderWslTheArchiveIsHandedOn)
{
    TestFolder folder;
    host().temporaryName = folder.path().u16string();
    expectWslLookup();
    expectListing(false, {0, "", ""});
    host().expectRun({wslPath, "--import", "mine", narrow(host().temporaryName), "archive", "--version", "2"});
    importFromTarIfNecessary("archive", "mine", true);
}

TEST_F(ProvisioningEntry, UnderDockerAllThreeAreHandedOn)
{
    setVariable("USE_WSL", "other");
    TestFolder folder;
    const std::string client = folder.makeFile("docker.exe");
    const std::string archive = folder.makeFile("archive");
    expectDockerLookup(client);
    expectImages(client, "");
    host().expectRun({client, "import", archive, "mine"});
    expectImages(client, "mine");
    importFromTarIfNecessary(archive, "mine", true);
    EXPECT_EQ(host().eventsLike("log"), (Events{dockerDetail("importFromTarIfNecessary: docker"),
                                                dockerDetail("importFromTarIfNecessary: dockerPath = " + client)}));
}

TEST_F(ProvisioningEntry, ErrorsOfDockerReachTheCaller)
{
    setVariable("USE_WSL", "0");
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    EXPECT_THROW(importFromTarIfNecessary("", "", false), foundation::core::except::IMsgIDException);
}

class Teardown : public HostTest {};

TEST_F(Teardown, RemovesTheDefaultDistroAndIgnoresItsInputs)
{
    expectWslLookup();
    host().expectRun({wslPath, "--unregister", hub}, {1, "", ""});
    hxArray text{"text", hxClass::character, u"mine", 0};
    callWithoutOutput(kelp_container_teardown, 1, 1, {&text});
    EXPECT_TRUE(host().eventsLike("hxIsChar").empty());
    EXPECT_EQ(host().eventsLike(commonDetail("clearDistroImage: COMMON")).size(), 1U);
}

TEST_F(Teardown, RemovesTheDefaultImage)
{
    setVariable("USE_WSL", "0");
    host().expectRun({"where", "docker.exe"}, {1, "", ""});
    host().expectRun({"", "image", "rm", "--force", hub});
    kelp_container_teardown(0, nullptr, 0, nullptr);
}

class WslCheck : public HostTest {
protected:
    static double check(int outputCount, const RunResult& listingResult)
    {
        host().expectRun({wslPath, "-l", "-q"}, listingResult);
        hxArray* outputs[] = {nullptr};
        kelp_container_wsl_check(outputCount, outputs, 0, nullptr);
        EXPECT_NE(outputs[0], nullptr);
        EXPECT_EQ(hxGetClass(outputs[0]), hxClass::floating);
        const double value = outputs[0]->scalar;
        hxDestroyArray(outputs[0]);
        return value;
    }
};

TEST_F(WslCheck, IsZeroWhenDistributionsCanBeListed)
{
    expectWslLookup();
    EXPECT_EQ(check(1, {0, "", "text"}), 0.0);
    expectEvents(sequence({wslLookup(), {ran({wslPath, "-l", "-q"})}}));
}

TEST_F(WslCheck, IsMinusThreeForAnyOtherStatus)
{
    expectWslLookup();
    EXPECT_EQ(check(1, {1, "kelp_hub_R9", ""}), -3.0);
    EXPECT_EQ(check(1, {-1, "", ""}), -3.0);
    EXPECT_EQ(check(1, {3, "", ""}), -3.0);
}

TEST_F(WslCheck, WritesItsOutputEvenWhenNoneIsAskedFor)
{
    expectWslLookup();
    EXPECT_EQ(check(0, {0, "", ""}), 0.0);
}

TEST_F(WslCheck, TestsWslWhicheverBackendIsSelected)
{
    setVariable("USE_WSL", "0");
    expectWslLookup();
    EXPECT_EQ(check(1, {0, "text", ""}), 0.0);
}

TEST_F(WslCheck, ExceptionsOfTheRunnerPassThrough)
{
    expectWslLookup();
    host().expectRun({wslPath, "-l", "-q"}, []() -> RunResult { throw std::runtime_error("cannot start"); });
    hxArray* outputs[] = {nullptr};
    EXPECT_THROW(kelp_container_wsl_check(1, outputs, 0, nullptr), std::runtime_error);
    EXPECT_EQ(outputs[0], nullptr);
}

} // namespace
