// The library's own work, and how it grows. USE_WSL says for which backend environments are prepared.
#include "library_work.h"

#include "host/diagnostics.h"

#include <cstdlib>
#include <string_view>

#include <benchmark/benchmark.h>

namespace {

void listing(benchmark::State& state)
{
    benchmarks::setProgramOutput(benchmarks::distributionListing(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(benchmarks::listDistributions());
    }
}

void repositories(benchmark::State& state)
{
    benchmarks::setProgramOutput(benchmarks::repositoryListing(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(benchmarks::listRepositories());
    }
}

void environment(benchmark::State& state)
{
    auto variables = benchmarks::variables(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(benchmarks::prepareEnvironment(variables));
    }
}

void logStatement(benchmark::State& state)
{
    benchmarks::setLogging(state.range(0) != 0);
    std::size_t seen = 0;
    const auto sink = foundation::core::diag::attach_sink([&](const auto& record) { seen += record.message.size(); });
    for (auto _ : state) {
        benchmarks::writeLogStatement(static_cast<int>(state.iterations()));
    }
    benchmark::DoNotOptimize(seen);
    benchmarks::setLogging(false);
}

void growing(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(10)->Arg(1000)->Arg(100000)->MinTime(0.05)->Repetitions(11);
}

} // namespace

int main(int count, char* arguments[])
{
    const char* const backend = std::getenv("USE_WSL");
    const bool wsl = backend == nullptr || std::string_view(backend) == "1";
    if (wsl) {
        growing(benchmark::RegisterBenchmark("listing", listing));
        benchmark::RegisterBenchmark("log statement", logStatement)->Arg(0)->Arg(1)->MinTime(0.05)->Repetitions(11);
    } else {
        growing(benchmark::RegisterBenchmark("repositories", repositories));
    }
    growing(benchmark::RegisterBenchmark(wsl ? "WSL environment" : "Docker environment", environment));
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
