// One piece of the library's work for callgrind to count: "count_library WORK".
#include "counted.h"
#include "library_work.h"

#include "host/diagnostics.h"

#include <cstdio>
#include <map>
#include <string>

namespace {

using benchmarks::countSecondTurn;

void logStatements(bool on)
{
    benchmarks::setLogging(on);
    const auto sink = foundation::core::diag::attach_sink([](const auto&) {});
    countSecondTurn([] {
        for (int i = 0; i < 1000; ++i) {
            benchmarks::writeLogStatement(i);
        }
    });
}

const std::map<std::string, void (*)()> works = {
    {"list-distributions",
     [] {
         benchmarks::setProgramOutput(benchmarks::distributionListing(1000));
         countSecondTurn([] { benchmarks::listDistributions(); });
     }},
    {"list-repositories",
     [] {
         benchmarks::setProgramOutput(benchmarks::repositoryListing(1000));
         countSecondTurn([] { benchmarks::listRepositories(); });
     }},
    {"prepare-environment",
     [] {
         auto variables = benchmarks::variables(1000);
         countSecondTurn([&] { benchmarks::prepareEnvironment(variables); });
     }},
    {"log-off", [] { logStatements(false); }},
    {"log-on", [] { logStatements(true); }},
};

} // namespace

int main(int count, char* arguments[])
{
    const auto work = count == 2 ? works.find(arguments[1]) : works.end();
    if (work == works.end()) {
        std::fputs("usage: count_library WORK\n", stderr);
        return 2;
    }
    work->second();
    return 0;
}
