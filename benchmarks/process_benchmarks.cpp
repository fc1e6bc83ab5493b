// Running programs: every contender does the same work. "process_benchmarks [--ballast=MIB] [benchmark's own flags]".
#include "contenders.h"
#include "machine.h"

#include <cstring>
#include <stdexcept>
#include <string_view>
#include <thread>

#include <benchmark/benchmark.h>

namespace {

using benchmarks::Arguments;
using benchmarks::Captured;
using benchmarks::Contender;
using benchmarks::Sizes;

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

// A contender that does not do the work is not measured.
void verify(const Captured& captured, const Sizes& expected)
{
    if (captured.status != 0 || captured.sizes != expected) {
        throw std::runtime_error("a contender captured something else than the program printed");
    }
}

void runSmall(benchmark::State& state, const Contender& contender)
{
    const Arguments arguments = benchmarks::quickProgram();
    for (auto _ : state) {
        verify(contender.run(arguments, {}), {});
    }
}

void runAtOnce(benchmark::State& state, const Contender& contender)
{
    const Arguments arguments = benchmarks::quickProgram();
    constexpr std::size_t count = 64;
    for (auto _ : state) {
        std::vector<std::thread> threads;
        threads.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            threads.emplace_back([&] { verify(contender.run(arguments, {}), {}); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
}

void capture(benchmark::State& state, const Contender& contender, const char* mode, std::size_t size)
{
    const Arguments arguments{BENCHMARK_CHILD, mode, std::to_string(size)};
    const Sizes expected = benchmarks::sizesOf(mode, size);
    for (auto _ : state) {
        verify(contender.run(arguments, expected), expected);
    }
}

template <class... Parameters>
benchmark::internal::Benchmark* add(const std::string& row, const Contender& contender, Parameters... parameters)
{
    return benchmark::RegisterBenchmark((row + "|" + contender.name).c_str(), parameters...)->UseRealTime();
}

void addAll(const Contender& contender)
{
    add("small", contender, runSmall, contender)->Iterations(benchmarks::quickRuns)->Unit(benchmark::kMicrosecond);
    add("at once", contender, runAtOnce, contender)->Iterations(1)->Unit(benchmark::kMillisecond);
    add("one stream", contender, capture, contender, "one", 256 * mebibyte)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    add("two streams", contender, capture, contender, "two", 256 * mebibyte)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    add("small writes", contender, capture, contender, "small", benchmarks::smallWritesSize * mebibyte)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

// Takes the host's weight off the command line. Memory that was never written to would weigh nothing.
std::vector<char> takeBallast(int& count, char* arguments[])
{
    constexpr std::string_view flag = "--ballast=";
    if (count < 2 || !std::string_view(arguments[1]).starts_with(flag)) {
        return {};
    }
    std::vector<char> ballast(std::stoul(arguments[1] + flag.size()) * mebibyte, 'b');
    std::copy(arguments + 2, arguments + count + 1, arguments + 1);
    --count;
    return ballast;
}

} // namespace

int main(int count, char* arguments[])
{
    const std::vector<char> ballast = takeBallast(count, arguments);
    benchmark::DoNotOptimize(ballast.data());
    for (const Contender& contender : benchmarks::contenders()) {
        addAll(contender);
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
