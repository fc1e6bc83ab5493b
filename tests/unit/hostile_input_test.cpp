// What names, paths and values contain never makes them more than they are: one argument each, and no part of a log.
#include "host_fixture.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>

namespace {

using namespace fake;
using namespace orb::lvm;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

// Each would be something else to a shell, to a splitter of command lines or to a parser of options.
const Arguments hostileTexts = {
    "a b",      "a\tb",         "a\nb",    " a ",         "\"a\"",     "a\"b",
    "a\\",      "a\\\"b",       "'a b'",   "--force",     "-v",        "--",
    "$(id)",    "`id`",         "$HOME",   "%PATH%",      "!PATH!",    "a;b",
    "a&b",      "a|b",          "a>b",     "a^b",         "*",         "~",
    "#a",       "@a",           "a=b",     "a,b",         "a:b/c@d",   "{{.Repository}}",
    "\xC3\xA4", "\xE2\x80\x8F", "\x1B[2J", "/etc/passwd", "..\\..\\a",
};

// Runs everything: finds both programs, has nothing registered, and says yes to all else.
class Machine {
public:
    explicit Machine(const TestFolder& folder) : client_(folder.makeFile("docker.exe"))
    {
        host().anyRun = [this](const Arguments& arguments) { return answer(arguments); };
    }
    ~Machine() { host().anyRun = nullptr; }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    const std::string& client() const { return client_; }
    const std::vector<Arguments>& runs() const { return runs_; }
    // What the next listing prints.
    std::string listed;
    // The status of all but look-ups and listings.
    int status = 0;

private:
    RunResult answer(const Arguments& arguments)
    {
        runs_.push_back(arguments);
        if (arguments.front() == "where") {
            return {0, arguments[1] == "wsl.exe" ? wslPath : client_, ""};
        }
        if (arguments[1] == "-v") {
            return {};
        }
        const bool lists = arguments[1] == "--list" || arguments[1] == "images";
        return lists ? RunResult{0, listed, ""} : RunResult{status, "output", "error"};
    }

    std::string client_;
    std::vector<Arguments> runs_;
};

void withEach(const std::function<void(const std::string&)>& check)
{
    for (const std::string& text : hostileTexts) {
        SCOPED_TRACE(text);
        check(text);
    }
}

class HostileNamesUnderWsl : public HostTest {
protected:
    TestFolder folder;
    Machine machine{folder};
};

TEST_F(HostileNamesUnderWsl, AreOneArgumentOfTheImport)
{
    withEach([this](const std::string& text) {
        const std::string archive = "archive " + text;
        importFromTarIfNecessary(archive, text, false);
        const Arguments& import = machine.runs().back();
        ASSERT_EQ(import.size(), 7U);
        EXPECT_EQ(import[1], "--import");
        EXPECT_EQ(import[2], text);
        EXPECT_EQ(import[4], archive);
    });
}

TEST_F(HostileNamesUnderWsl, AreOneArgumentOfTheRemoval)
{
    withEach([this](const std::string& text) {
        clearDistroImage(text);
        EXPECT_EQ(machine.runs().back(), (Arguments{wslPath, "--unregister", text}));
    });
}

class HostileNamesUnderDocker : public HostTest {
protected:
    HostileNamesUnderDocker() { setVariable("USE_WSL", "0"); }

    TestFolder folder;
    Machine machine{folder};
};

TEST_F(HostileNamesUnderDocker, AreOneArgumentOfTheImport)
{
    const std::string archive = folder.makeFile("archive");
    withEach([&](const std::string& text) {
        EXPECT_THROW(importFromTarIfNecessary(archive, text, true), foundation::core::except::IMsgIDException);
        EXPECT_THAT(machine.runs(), Contains(Arguments{machine.client(), "import", archive, text}));
    });
}

TEST_F(HostileNamesUnderDocker, AreOneArgumentOfTheStart)
{
    withEach([this](const std::string& text) {
        EXPECT_TRUE(startContainerIfNecessary(text, text));
        EXPECT_EQ(machine.runs().back(),
                  (Arguments{machine.client(), "run", "-di", "--network=host", "--name=" + text, text}));
    });
}

TEST_F(HostileNamesUnderDocker, AreOneArgumentOfTheStop)
{
    withEach([this](const std::string& text) {
        EXPECT_TRUE(stopContainerIfNecessary(text));
        EXPECT_EQ(machine.runs().back(), (Arguments{machine.client(), "container", "rm", "-f", text}));
    });
}

TEST_F(HostileNamesUnderDocker, AreOneArgumentOfTheRemoval)
{
    withEach([this](const std::string& text) {
        clearDistroImage(text);
        EXPECT_EQ(machine.runs().back(), (Arguments{machine.client(), "image", "rm", "--force", text}));
    });
}

TEST_F(HostileNamesUnderDocker, AreOneElementOfThePrefix)
{
    withEach([this](const std::string& text) {
        EXPECT_EQ(getContainerArgumentsPrefix(text), (Arguments{machine.client(), "exec", text}));
    });
}

class HostileValues : public HostTest {};

TEST_F(HostileValues, AreOneOptionUnderDocker)
{
    setVariable("USE_WSL", "0");
    withEach([](const std::string& text) {
        Arguments arguments = {"docker", "exec", "c"};
        std::map<std::string, std::string> environment = {{"NAME", text}, {"LD_LIBRARY_PATH", ""}};
        applySharedEnvironment(arguments, environment);
        ASSERT_EQ(arguments.size(), 7U);
        EXPECT_EQ(arguments[5], "NAME=" + text);
        EXPECT_EQ(arguments[6], "c");
    });
}

TEST_F(HostileValues, StayInTheEnvironmentUnderWsl)
{
    withEach([](const std::string& text) {
        Arguments arguments = {"wsl.exe", "--exec"};
        std::map<std::string, std::string> environment = {{"NAME", text}};
        applySharedEnvironment(arguments, environment);
        EXPECT_EQ(arguments, (Arguments{"wsl.exe", "--exec"}));
        EXPECT_EQ(environment.at("NAME"), text);
        EXPECT_EQ(environment.at("WSLENV"), "LD_LIBRARY_PATH:NAME");
    });
}

// Uses everything that may get to see a secret, with the most talkative log there is.
class Secrets : public HostTest {
protected:
    static constexpr char secret[] = "s3cr3t";

    // With a status other than 0 all that can fail does, and says so.
    void useEverything(int status)
    {
        setVariable("KELP_ADDITIONAL_LOGGING", "1");
        setVariable("AUX_DOCKER_ARGS", std::string("-e TOKEN=") + secret);
        TestFolder folder;
        Machine machine(folder);
        Arguments arguments = getContainerArgumentsPrefix("c");
        std::map<std::string, std::string> environment = {{"TOKEN", secret}};
        applySharedEnvironment(arguments, environment);
        machine.listed = status == 0 ? hub : "";
        machine.status = status;
        try {
            importFromTarIfNecessary(folder.makeFile("archive"), "", false);
        } catch (const foundation::core::except::IMsgIDException& error) {
            EXPECT_NE(status, 0) << error.description();
        }
        startContainerIfNecessary("", "");
        getContainerCommandPrefix("");
        stopContainerIfNecessary("");
        clearDistroImage("");
    }

    static void expectSilence()
    {
        const Events records = host().eventsLike("log ");
        EXPECT_FALSE(records.empty());
        EXPECT_THAT(records, Not(Contains(HasSubstr(secret))));
    }
};

TEST_F(Secrets, InVariablesAreNotLoggedUnderWsl)
{
    useEverything(0);
    useEverything(1);
    expectSilence();
}

TEST_F(Secrets, InVariablesAndFurtherArgumentsAreNotLoggedUnderDocker)
{
    setVariable("USE_WSL", "0");
    useEverything(0);
    useEverything(1);
    EXPECT_FALSE(host().eventsLike(std::string("run")).empty());
    expectSilence();
}

} // namespace
