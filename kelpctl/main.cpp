#include "platform.h"
#include "run.h"

int main(int argc, char* argv[])
{
    const kelpctl::StandardStreams streams;
    return kelpctl::runProgram(argc, argv);
}
