// The environment that a command inside shares, for any variables and any command.
#include "story.h"

#include "orb/lvm.h"

namespace {

using namespace fake;
using orb::lvm::applySharedEnvironment;

const std::string runtime = "/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64";

class SharedEnvironmentRule : public RuleTest {
protected:
    std::string name()
    {
        static const std::vector<std::string> known = {"LD_LIBRARY_PATH",
                                                       "LD_LIBRARY_PATH/l",
                                                       "ld_library_path",
                                                       "WSLENV",
                                                       "WSLENV/u",
                                                       "wslenv",
                                                       "PATH",
                                                       "PATH/l",
                                                       "HOME",
                                                       "",
                                                       "a",
                                                       "/",
                                                       "//",
                                                       "///",
                                                       "a/",
                                                       "/a",
                                                       "a/b",
                                                       "a/bc",
                                                       "A/b/c",
                                                       "a=b",
                                                       "a=b/p",
                                                       "=",
                                                       "a:b",
                                                       "a:b/u"};
        const std::string name = any.oneIn(2) ? any.oneOf(known) : any.text();
        return any.oneIn(4) ? name + "/" + any.oneOf(std::vector<std::string>{"p", "l", "u", "w", "U", "1", "/", " "})
                            : name;
    }

    Environment variables()
    {
        Environment variables;
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            variables[name()] = any.oneIn(3) ? any.output() : any.textOrNothing();
        }
        if (any.oneIn(3)) {
            variables["LD_LIBRARY_PATH"] = any.oneOf(
                std::vector<std::string>{"", ":", "/x", runtime, runtime + ":", ":" + runtime, "/x:" + runtime});
        }
        return variables;
    }

    Arguments command()
    {
        Arguments command;
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            command.push_back(any.text());
        }
        return command;
    }

    static void addLibraryPath(Environment& variables)
    {
        const auto present = variables.find("LD_LIBRARY_PATH");
        variables["LD_LIBRARY_PATH"] = present == variables.end() ? runtime : present->second + ":" + runtime;
    }

    // Applies the library to both and the rule, given as a function, to copies; a second time to what came of it.
    template <class Rule>
    void expectRule(const Rule& rule)
    {
        Arguments args = command();
        Environment env = variables();
        for (int call = 0; call < 2; ++call) {
            Arguments expectedArgs = args;
            Environment expectedEnv = env;
            addLibraryPath(expectedEnv);
            rule(expectedArgs, expectedEnv);
            applySharedEnvironment(args, env);
            EXPECT_EQ(args, expectedArgs) << "call " << call;
            EXPECT_EQ(env, expectedEnv) << "call " << call;
        }
    }
};

TEST_P(SharedEnvironmentRule, UnderWslEveryKeyIsListedAsItStandsUnlessThereIsAList)
{
    if (any.oneIn(2)) {
        setVariable("USE_WSL", "1");
    }
    forManyValues(300, [this] {
        expectRule([](Arguments&, Environment& env) {
            std::string names;
            for (const auto& [name, value] : env) {
                names += (names.empty() ? "" : ":") + name;
            }
            env.emplace("WSLENV", names);
        });
    });
    expectEvents({});
}

TEST_P(SharedEnvironmentRule, UnderDockerEveryVariableIsAnOptionInFrontOfTheLastArgument)
{
    setVariable("USE_WSL", any.oneOf(std::vector<std::string>{"", "0", "11", "docker"}));
    forManyValues(300, [this] {
        expectRule([](Arguments& args, Environment& env) {
            if (args.empty()) {
                return;
            }
            const std::string last = args.back();
            args.pop_back();
            for (const auto& [key, value] : env) {
                const bool flagged = key.size() > 2 && key[key.size() - 2] == '/';
                args.emplace_back("-e");
                args.push_back(key.substr(0, flagged ? key.size() - 2 : key.size()) + "=" + value);
            }
            args.push_back(last);
        });
    });
    expectEvents({});
}

INSTANTIATE_TEST_SUITE_P(Seed, SharedEnvironmentRule, testing::Range(0U, 2U));

} // namespace
