// One run of kelpctl inside the test's own process.
#pragma once

#include "environment_variable.h"

#include "host/process.h"

#include <boost/json/fwd.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Runs kelpctl with streams of its own. The variables that it reads start out unset, and are brought back at the end.
class Session {
public:
    // What the console is like, and what the program that exec starts exits with.
    bool errorIsTerminal = false;
    bool errorColours = false;
    bool interactive = false;
    std::int32_t programStatus = 0;
    // What programs that kelpctl runs itself answer, by their command line. Any other fails with status 127.
    std::map<std::string, orb::process::detail::RunResult> answers;
    // How often such a command line fails before it answers.
    std::map<std::string, int> late;

    int run(const std::vector<std::string>& arguments);

    // Of the last run.
    std::string out;
    std::string error;
    std::vector<std::string> startedArguments;
    std::map<std::string, std::string> startedEnvironment;
    // The command lines of programs that were asked, of all runs.
    std::vector<std::string> asked;

    // The object that the last run printed.
    boost::json::value json() const;

private:
    EnvironmentVariable useWsl_{"USE_WSL"};
    // No settings of Docker's that are the machine's own.
    EnvironmentVariable dockerHost_{"DOCKER_HOST"};
    EnvironmentVariable dockerContext_{"DOCKER_CONTEXT"};
    EnvironmentVariable dockerConfig_{"DOCKER_CONFIG", "/nowhere"};
    EnvironmentVariable wslenv_{"WSLENV"};
    EnvironmentVariable wslUtf8_{"WSL_UTF8"};
    EnvironmentVariable localeAll_{"LC_ALL"};
    EnvironmentVariable localeMessages_{"LC_MESSAGES"};
    EnvironmentVariable language_{"LANG"};
};
