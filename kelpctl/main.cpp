#include "commands/program.h"
#include "terminal/platform.h"

int main(int argc, char* argv[])
{
    const kelpctl::StandardStreams streams;
    return kelpctl::runProgram(argc, argv);
}
