#include "session.h"

#include "run.h"

#include <sstream>

int Session::run(const std::vector<std::string>& arguments)
{
    std::ostringstream outStream;
    std::ostringstream errorStream;
    kelpctl::Console console{outStream, errorStream, errorIsTerminal, interactive,
                             [this](const auto& started, const auto& environment) {
                                 startedArguments = started;
                                 startedEnvironment = environment;
                                 return programStatus;
                             }};
    const int status = kelpctl::run(arguments, console);
    out = outStream.str();
    error = errorStream.str();
    return status;
}
