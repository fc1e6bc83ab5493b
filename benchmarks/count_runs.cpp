// So many runs of a program, to be counted: "count_runs COUNT PROGRAM [ARGUMENT...]".
#include "counted.h"

#include "host/process.h"

#include <cstdio>
#include <string>
#include <vector>

int main(int count, char* arguments[])
{
    if (count < 3) {
        std::fputs("usage: count_runs COUNT PROGRAM [ARGUMENT...]\n", stderr);
        return 2;
    }
    const std::vector<std::string> program(arguments + 2, arguments + count);
    benchmarks::countSecondTurn([&] {
        for (int i = std::stoi(arguments[1]); i > 0; --i) {
            orb::process::detail::run(program);
        }
    });
}
