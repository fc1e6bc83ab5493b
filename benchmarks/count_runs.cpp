// A hundred runs of a program that ends at once, for callgrind to count.
#include "counted.h"

#include "host/process.h"

int main()
{
    benchmarks::countSecondTurn([] {
        for (int i = 0; i < 100; ++i) {
            orb::process::detail::run({"/bin/true"});
        }
    });
}
