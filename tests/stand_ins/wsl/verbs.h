#pragma once

#include <string_view>

// One function per verb. Each takes what follows the verb on the command line and returns the exit status; what goes
// wrong is thrown as a Failure.
namespace stand_in {

int showVersion(std::string_view rest);
int showHelp(std::string_view rest);
int showStatus(std::string_view rest);
int listDistributions(std::string_view rest);
int importDistribution(std::string_view rest);
int unregisterDistribution(std::string_view rest);
int terminateDistribution(std::string_view rest);
int setDefaultDistribution(std::string_view rest);
int shutDown(std::string_view rest);

// Everything that is no verb: options and a command to run inside a distribution.
int runInside(std::string_view line);

} // namespace stand_in
