// One piece of the library's work for callgrind to count: "count_library WORK COUNT", on so many entries.
#include "counted.h"
#include "library_work.h"

#include "host/diagnostics.h"

#include <cstdio>
#include <map>
#include <string>

namespace {

using benchmarks::countSecondTurn;

void logStatements(bool on, std::size_t count)
{
    benchmarks::setLogging(on);
    const auto sink = foundation::core::diag::attach_sink([](const auto&) {});
    countSecondTurn([count] {
        for (std::size_t i = 0; i < count; ++i) {
            benchmarks::writeLogStatement(static_cast<int>(i));
        }
    });
}

const std::map<std::string, void (*)(std::size_t)> works = {
    {"list-distributions",
     [](std::size_t count) {
         benchmarks::setProgramOutput(benchmarks::distributionListing(count));
         countSecondTurn([] { benchmarks::listDistributions(); });
     }},
    {"list-repositories",
     [](std::size_t count) {
         benchmarks::setProgramOutput(benchmarks::repositoryListing(count));
         countSecondTurn([] { benchmarks::listRepositories(); });
     }},
    {"prepare-environment",
     [](std::size_t count) {
         auto variables = benchmarks::variables(count);
         countSecondTurn([&] { benchmarks::prepareEnvironment(variables); });
     }},
    {"log-off", [](std::size_t count) { logStatements(false, count); }},
    {"log-on", [](std::size_t count) { logStatements(true, count); }},
};

} // namespace

int main(int count, char* arguments[])
{
    const auto work = count == 3 ? works.find(arguments[1]) : works.end();
    if (work == works.end()) {
        std::fputs("usage: count_library WORK COUNT\n", stderr);
        return 2;
    }
    work->second(std::stoul(arguments[2]));
    return 0;
}
