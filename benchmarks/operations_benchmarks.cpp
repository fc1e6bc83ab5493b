// What the library adds to the programs that it runs: each exported operation with everything in place, and the very
// same programs run with nothing around them. USE_WSL says which backend is measured; the environment must provide it.
#include "contenders.h"
#include "machine.h"
#include "recorder.h"

#include "host/array.h"
#include "host/network.h"
#include "orb/lvm.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string_view>

#include <benchmark/benchmark.h>

namespace {

using benchmarks::Arguments;
using benchmarks::Captured;
using benchmarks::RecordedProcess;

struct Operation {
    std::string name;
    std::function<void()> work;
    // How often it is measured. Expensive ones take their time.
    int repetitions = 800;
    // Make the state that the work needs, and bring back the one that other work needs; not measured.
    std::function<void()> prepare = [] {};
    std::function<void()> restore = [] {};
    // What the host must be asked besides running programs: part of the least that the work takes.
    std::function<void()> question = [] {};
};

const std::string hub = "kelp_hub";

std::string setting(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : throw std::runtime_error(std::string(name) + " is not set");
}

void require(bool success, const char* what)
{
    if (!success) {
        throw std::runtime_error(what);
    }
}

// As the system writes it.
std::string native(const std::filesystem::path& path)
{
    return std::filesystem::path(path).make_preferred().string();
}

Captured tool(const char* program, Arguments arguments)
{
    arguments.insert(arguments.begin(), native(std::filesystem::path(STAND_IN_FOLDER) / program));
    return benchmarks::runFloor(arguments);
}

std::string distribution()
{
    return orb::lvm::addKVRelease(hub);
}

void checkWsl()
{
    hxArray* result = nullptr;
    kelp_container_wsl_check(1, &result, 0, nullptr);
    require(hxGetScalar(result) == 0, "WSL is not usable");
    hxDestroyArray(result);
}

void applyToOneVariable()
{
    Arguments arguments{"program"};
    std::map<std::string, std::string> environment{{"NAME", "value"}};
    orb::lvm::applySharedEnvironment(arguments, environment);
    benchmark::DoNotOptimize(environment);
}

// Those that are the same for both backends.
std::vector<Operation> simpleOperations()
{
    return {
        {"getContainerCommandPrefix", [] { benchmark::DoNotOptimize(orb::lvm::getContainerCommandPrefix({})); }},
        {"getContainerArgumentsPrefix", [] { benchmark::DoNotOptimize(orb::lvm::getContainerArgumentsPrefix({})); }},
        {"getContainerExecutablePath", [] { benchmark::DoNotOptimize(orb::lvm::getContainerExecutablePath()); }},
        {"applySharedEnvironment", applyToOneVariable},
        {"addKVRelease", [] { benchmark::DoNotOptimize(orb::lvm::addKVRelease(hub)); }},
        {"getContainerTarsDirectory", [] { benchmark::DoNotOptimize(&orb::lvm::getContainerTarsDirectory()); }},
    };
}

void importHub()
{
    orb::lvm::importFromTarIfNecessary({}, {}, false);
}

void clearHub()
{
    orb::lvm::clearDistroImage({});
}

void start()
{
    require(orb::lvm::startContainerIfNecessary({}, {}), "no container");
}

void stop()
{
    require(orb::lvm::stopContainerIfNecessary({}), "no container");
}

void setUp()
{
    kelp_container_setup(0, nullptr, 0, nullptr);
}

void tearDown()
{
    kelp_container_teardown(0, nullptr, 0, nullptr);
}

std::vector<Operation> wslOperations()
{
    const auto provide = [] {
        const std::string folder = native(setting("BENCHMARK_FOLDER") + "/distribution");
        tool("wsl.exe", {"--import", distribution(), folder, native(HUB_ARCHIVE), "--version", "2"});
        // It runs until it is removed.
        require(tool("wsl.exe", {"-d", distribution(), "--exec", "true"}).status == 0, "no distribution");
    };
    provide();
    std::vector<Operation> operations = simpleOperations();
    operations.push_back({"startContainerIfNecessary", start});
    operations.push_back({"stopContainerIfNecessary", stop});
    // The adapter of WSL is looked for once the distribution is there.
    const auto addresses = [] { benchmark::DoNotOptimize(foundation::core::net::NetworkInterface::list()); };
    operations.push_back({"importFromTarIfNecessary", importHub, 800, [] {}, [] {}, addresses});
    operations.push_back({"kelp_container_setup", setUp, 800, [] {}, [] {}, addresses});
    operations.push_back({"kelp_container_wsl_check", checkWsl});
    operations.push_back({"clearDistroImage", clearHub, 150, [] {}, provide});
    operations.push_back({"kelp_container_teardown", tearDown, 150, [] {}, provide});
    return operations;
}

std::vector<Operation> dockerOperations()
{
    // The image stays under a second name, so that it can be had back without its archive.
    require(tool("docker.exe", {"load", "-i", native(setting("BENCHMARK_DOCKER_ARCHIVE"))}).status == 0, "no archive");
    require(tool("docker.exe", {"tag", distribution(), "kept"}).status == 0, "no image");
    const auto provide = [] { require(tool("docker.exe", {"tag", "kept", distribution()}).status == 0, "no image"); };
    const auto runContainer = [] {
        require(tool("docker.exe", {"run", "-di", "--network=host", "--name=" + hub, distribution()}).status == 0,
                "no container");
    };
    const auto removeContainer = [] { tool("docker.exe", {"container", "rm", "-f", hub}); };
    removeContainer();
    std::vector<Operation> operations = simpleOperations();
    operations.push_back({"importFromTarIfNecessary", importHub, 150});
    operations.push_back({"kelp_container_setup", setUp, 150});
    operations.push_back({"clearDistroImage", clearHub, 150, [] {}, provide});
    operations.push_back({"kelp_container_teardown", tearDown, 150, [] {}, provide});
    operations.push_back({"startContainerIfNecessary", start, 60, [] {}, removeContainer});
    operations.push_back({"stopContainerIfNecessary", stop, 60, runContainer});
    return operations;
}

using Children = std::vector<std::unique_ptr<RecordedProcess>>;

void measure(benchmark::State& state, const Operation& operation, const std::function<void()>& work,
             std::size_t children)
{
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        operation.prepare();
        const Clock::time_point begin = Clock::now();
        work();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
        operation.restore();
    }
    state.counters["children"] = static_cast<double>(children);
}

void measureOften(benchmark::State& state, const std::function<void()>& work)
{
    for (auto _ : state) {
        work();
    }
    state.counters["children"] = 0;
}

void add(const std::string& row, const Operation& operation, const std::shared_ptr<Children>& children)
{
    if (children->empty()) {
        benchmark::RegisterBenchmark((row + "|operation").c_str(), measureOften, operation.work)
            ->MinTime(0.05)
            ->Repetitions(10);
        return;
    }
    const auto addContender = [&](const char* name, const std::function<void()>& work) {
        benchmark::RegisterBenchmark((row + "|" + name).c_str(), measure, operation, work, children->size())
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(benchmarks::repetitions(operation.repetitions))
            ->Unit(benchmark::kMillisecond);
    };
    addContender("bare children", [children, question = operation.question] {
        for (const auto& child : *children) {
            child->run();
        }
        question();
    });
    addContender("operation", operation.work);
}

void addAll()
{
    const char* const backend = std::getenv("USE_WSL");
    const bool wsl = backend == nullptr || std::string_view(backend) == "1";
    // The first call of a process also finds the programs.
    orb::lvm::getContainerExecutablePath();
    for (const Operation& operation : wsl ? wslOperations() : dockerOperations()) {
        operation.prepare();
        const auto children = std::make_shared<Children>(benchmarks::processesStartedBy(operation.work));
        operation.restore();
        add(std::string(wsl ? "WSL " : "Docker ") + operation.name, operation, children);
    }
}

} // namespace

int main(int count, char* arguments[])
{
    try {
        addAll();
        benchmark::Initialize(&count, arguments);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "operations_benchmarks: %s\n", error.what());
        return 1;
    }
}
