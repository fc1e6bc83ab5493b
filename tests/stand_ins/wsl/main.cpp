// A stand-in for wsl.exe: it keeps a registry of its own, imports archives, and runs their programs in namespaces.
#include "command_line.h"
#include "modes.h"
#include "output.h"
#include "special_modes.h"
#include "verbs.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <string>
#include <unistd.h>

namespace stand_in {
namespace {

struct Verb {
    std::string_view word;
    std::string_view shortWord;
    std::string_view name;
    int (*run)(std::string_view rest);
};

constexpr std::array verbs = {
    Verb{"--list", "-l", "list", listDistributions},
    Verb{"--version", "-v", "version", showVersion},
    Verb{"--import", "", "import", importDistribution},
    Verb{"--unregister", "", "unregister", unregisterDistribution},
    Verb{"--terminate", "-t", "terminate", terminateDistribution},
    Verb{"--set-default", "-s", "set-default", setDefaultDistribution},
    Verb{"--shutdown", "", "shutdown", shutDown},
    Verb{"--status", "", "status", showStatus},
    Verb{"--help", "", "help", showHelp},
};

const Verb* findVerb(std::string_view word)
{
    for (const Verb& verb : verbs) {
        if (!word.empty() && (word == verb.word || word == verb.shortWord)) {
            return &verb;
        }
    }
    return nullptr;
}

int runCommandLine(std::string_view line)
{
    const std::string_view whole = afterProgramName(line);
    std::string_view rest = whole;
    const std::string_view word = takeWord(rest);
    const Verb* verb = findVerb(word);
    setVerb(verb == nullptr ? "exec" : verb->name);
    if (const std::optional<int> status = behaveSpecially(word, rest)) {
        return *status;
    }
    return verb == nullptr ? runInside(whole) : verb->run(rest);
}

std::string rawCommandLine(int argc, char** argv)
{
    const char* given = std::getenv("WSL_STAND_IN_COMMAND_LINE");
    return given == nullptr ? joinWindows({argv, argv + argc}) : given;
}

// For tests that count: appends "wsl" and the arguments to the file that STAND_IN_CALLS names.
void recordCall(std::string_view line)
{
    const char* file = std::getenv("STAND_IN_CALLS");
    if (file != nullptr && *file != '\0') {
        std::ofstream(file, std::ios::app) << "wsl " << afterProgramName(line) << '\n';
    }
}

// A status of Linux has eight bits. Whoever wants all of a Windows one gives a descriptor to write it to.
int statusDescriptor()
{
    const long descriptor = numberFromEnvironment("WSL_STAND_IN_STATUS_FD", -1);
    if (descriptor >= 0) {
        ::fcntl(static_cast<int>(descriptor), F_SETFD, FD_CLOEXEC);
    }
    return static_cast<int>(descriptor);
}

} // namespace
} // namespace stand_in

int main(int argc, char** argv)
{
    const int descriptor = stand_in::statusDescriptor();
    const std::string line = stand_in::rawCommandLine(argc, argv);
    stand_in::recordCall(line);
    const int status = stand_in::reportingFailures([&line] { return stand_in::runCommandLine(line); });
    if (descriptor >= 0) {
        stand_in::writeBytes(descriptor, std::to_string(status));
    }
    return status & 0xFF;
}
