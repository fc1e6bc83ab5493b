// Starting: a program that loads and unloads the library, and "kelpctl check".
#include "contenders.h"
#include "machine.h"
#include "recorder.h"

#include "host/array.h"
#include "orb/lvm.h"

#include <cstdio>
#include <exception>
#include <stdexcept>

#include <benchmark/benchmark.h>

namespace {

using benchmarks::Arguments;

void measure(benchmark::State& state, const std::function<void()>& work)
{
    for (auto _ : state) {
        work();
    }
}

void add(const std::string& name, const std::function<void()>& work)
{
    benchmark::RegisterBenchmark(name.c_str(), measure, work)
        ->UseRealTime()
        ->Iterations(1)
        ->Repetitions(benchmarks::repetitions(40))
        ->Unit(benchmark::kMillisecond);
}

std::function<void()> program(const Arguments& arguments)
{
    return [arguments] {
        if (benchmarks::runFloor(arguments).status != 0) {
            throw std::runtime_error("a program failed: " + arguments.front());
        }
    };
}

void checkWsl()
{
    hxArray* result = nullptr;
    kelp_container_wsl_check(1, &result, 0, nullptr);
    const bool usable = hxGetScalar(result) == 0;
    hxDestroyArray(result);
    if (!usable) {
        throw std::runtime_error("WSL is not usable");
    }
}

void addAll()
{
    add("load|program alone", program({LOAD_LIBRARY}));
    add("load|host services and Boost.Log", program({LOAD_LIBRARY, HOST_SERVICES}));
    add("load|library", program({LOAD_LIBRARY, THE_LIBRARY}));
    // In a process of its own the first call finds the programs too.
    const auto children = std::make_shared<std::vector<std::unique_ptr<benchmarks::RecordedProcess>>>(
        benchmarks::processesStartedBy(checkWsl));
    add("kelpctl check|bare children", [children] {
        for (const auto& child : *children) {
            child->run();
        }
    });
    add("kelpctl check|kelpctl --help", program({KELPCTL, "--help"}));
    add("kelpctl check|kelpctl check", program({KELPCTL, "check"}));
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
        std::fprintf(stderr, "start_benchmarks: %s\n", error.what());
        return 1;
    }
}
