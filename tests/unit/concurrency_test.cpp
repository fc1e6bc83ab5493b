// First calls of everything from many threads at once.
#include "fake_frame.h"
#include "host_fixture.h"

#include "docker.h"
#include "frame.h"
#include "orb/lvm.h"

#include <atomic>
#include <set>
#include <thread>

namespace {

using namespace fake;
using namespace orb::lvm;

// What one thread got from its calls; equal for all threads.
using Answers = std::vector<std::string>;

class Concurrency : public HostTest {
protected:
    // Calls everything on a thread of its own, on which all programs must be run.
    static void expectAllRunsOnTheCallersThread(const std::string& client)
    {
        std::set<std::thread::id> runners;
        host().anyRun = [&](const Arguments& arguments) {
            runners.insert(std::this_thread::get_id());
            return answerOf(arguments, client);
        };
        std::thread::id caller;
        std::thread([&caller] {
            caller = std::this_thread::get_id();
            callEverything("archive");
        }).join();
        EXPECT_EQ(runners, std::set<std::thread::id>{caller});
    }

    // Lets 64 threads begin `calls` at the same moment, and gives back the different answers.
    template <class Calls>
    static std::set<Answers> atOnce(const Calls& calls)
    {
        constexpr std::size_t count = 64;
        std::vector<Answers> answers(count);
        std::atomic<std::size_t> ready = 0;
        std::vector<std::thread> threads;
        threads.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            threads.emplace_back([&, i] {
                ++ready;
                while (ready < count) {
                    std::this_thread::yield();
                }
                answers[i] = calls();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return {answers.begin(), answers.end()};
    }

    static std::string joined(const std::vector<std::string>& elements)
    {
        std::string text;
        for (const std::string& element : elements) {
            text += element + "|";
        }
        return text;
    }

    // Every exported function, each once.
    static Answers callEverything(const std::string& tarPath)
    {
        Answers answers;
        answers.push_back(getContainerExecutablePath());
        answers.push_back(getContainerCommandPrefix(""));
        answers.push_back(joined(getContainerArgumentsPrefix("")));
        answers.push_back(addKVRelease("name"));
        answers.push_back(detail::hubTag());
        answers.push_back(narrow(getContainerTarsDirectory()));
        answers.push_back(startContainerIfNecessary("", "") ? "started" : "not started");
        answers.push_back(stopContainerIfNecessary("") ? "stopped" : "not stopped");
        std::vector<std::string> args = {"run", "img"};
        std::map<std::string, std::string> env = {{"A", "1"}};
        applySharedEnvironment(args, env);
        answers.push_back(joined(args));
        answers.push_back(std::to_string(env.size()));
        importFromTarIfNecessary(tarPath, "", false);
        clearDistroImage("");
        hxArray* output = nullptr;
        kelp_container_wsl_check(1, &output, 0, nullptr);
        answers.push_back(std::to_string(output->scalar));
        hxDestroyArray(output);
        kelp_container_setup(0, nullptr, 0, nullptr);
        kelp_container_teardown(0, nullptr, 0, nullptr);
        return answers;
    }

    static RunResult answerOf(const Arguments& arguments, const std::string& client)
    {
        if (arguments == Arguments{"where", "wsl.exe"}) {
            return {0, wslPath + "\r\n", ""};
        }
        if (arguments == Arguments{"where", "docker.exe"}) {
            return {0, client + "\r\n", ""};
        }
        const bool lists = arguments.at(1) == "--list" || arguments.at(1) == "images";
        return {0, lists ? hub + "\n" : "", ""};
    }

    TestFolder folder;
};

TEST_F(Concurrency, FirstCallsUnderWslAgree)
{
    host().anyRun = [](const Arguments& arguments) { return answerOf(arguments, ""); };
    const std::set<Answers> answers = atOnce([] { return callEverything("archive"); });
    const Answers expected = {wslPath,
                              wslPath + " -d " + hub + " --exec ",
                              wslPath + "|-d|" + hub + "|--exec|",
                              "name_R9",
                              "kelp_hubkelp_hub_R9",
                              "native:root/toolbox/shared/kavori/kelp/tar_files",
                              "started",
                              "stopped",
                              "run|img|",
                              "3",
                              std::to_string(0.0)};
    EXPECT_EQ(answers, std::set<Answers>{expected});
    EXPECT_EQ(host().eventsLike(askedRelease).size(), 1U);
    EXPECT_EQ(host().eventsLike("get_install_path").size(), 1U);
    EXPECT_EQ(host().loggers.size(), 4U);
}

TEST_F(Concurrency, ProgramsAreRunOnTheCallersThreadUnderWsl)
{
    expectAllRunsOnTheCallersThread("");
}

TEST_F(Concurrency, ProgramsAreRunOnTheCallersThreadUnderDocker)
{
    setVariable("USE_WSL", "0");
    expectAllRunsOnTheCallersThread(folder.makeFile("docker.exe"));
}

TEST_F(Concurrency, FirstCallsUnderDockerAgree)
{
    setVariable("USE_WSL", "0");
    const std::string client = folder.makeFile("docker.exe");
    host().anyRun = [&](const Arguments& arguments) { return answerOf(arguments, client); };
    const std::set<Answers> answers = atOnce([] { return callEverything("archive"); });
    const Answers expected = {
        client,
        client + " exec kelp_hub",
        client + "|exec|kelp_hub|",
        "name_R9",
        "kelp_hubkelp_hub_R9",
        "native:root/toolbox/shared/kavori/kelp/tar_files",
        "started",
        "stopped",
        "run|-e|A=1|-e|LD_LIBRARY_PATH=/opt/vrun/korvane/bin/plat64:/opt/vrun/korvane/sys/os/plat64|img|",
        "2",
        std::to_string(0.0)};
    EXPECT_EQ(answers, std::set<Answers>{expected});
    EXPECT_EQ(host().eventsLike(askedRelease).size(), 1U);
    EXPECT_EQ(host().loggers.size(), 6U);
}

} // namespace
