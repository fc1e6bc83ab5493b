// Questions to wsl.exe and the Docker client that change nothing. Each is one child program; the journal's time limit
// holds for it.
#pragma once

#include "console.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// A program's answer. Texts are readable UTF-8.
struct Answer {
    std::vector<std::string> arguments;
    // Nothing when the program could not be started; `error` says why then.
    std::optional<std::int32_t> status;
    std::string output;
    std::string error;

    bool good() const { return status == 0; }
};

// Runs the program. wsl.exe is asked for UTF-8 and for no warnings.
Answer ask(Console& console, const std::vector<std::string>& arguments);

struct DockerEngine {
    bool reachable = false;
    // What the client and the engine tell about themselves, empty when they do not.
    std::string clientVersion;
    std::string version;
    // "linux", or "windows" for an engine that runs Windows containers.
    std::string system;
    Answer answer;
};

DockerEngine askEngine(Console& console, const std::string& client);

enum class ContainerState { unknown, missing, stopped, paused, running };

// The state of the container of that name. Unknown when the engine does not answer.
ContainerState askContainer(Console& console, const std::string& client, const std::string& container);

// Whether the engine has an image of that name. False as well when the engine does not answer.
bool imageExists(Console& console, const std::string& client, const std::string& image);

// Whether the image names a program that its containers run.
bool imageHasProgram(Console& console, const std::string& client, const std::string& image);

struct Distribution {
    std::string name;
    // wsl.exe's own word, which is the same in every language: Running, Stopped, Installing, ... Empty when not known.
    std::string state;
    // 1 or 2; 0 when not known.
    int version = 0;
    bool isDefault = false;
};

struct DistributionList {
    // Whether wsl.exe could tell. An empty list that is known means that there are none.
    bool known = false;
    std::vector<Distribution> all;
    // Of "--list -q".
    Answer answer;
};

// The distributions, those that are being installed or removed included where wsl.exe shows them. Whether it can tell is
// asked as the library asks.
DistributionList askDistributions(Console& console, const std::string& wslPath);

// The question for the table of states, which has those as well that the list of names keeps back.
std::vector<std::string> distributionQuestion(const std::string& wslPath);

// The distributions of both answers; the table is empty when there is none.
std::vector<Distribution> distributionsIn(std::string_view names, std::string_view table);

// Whether it is being installed, removed, converted or exported. Nothing runs in it meanwhile.
bool isBusy(const Distribution& distribution);

// The table that "wsl.exe --list --verbose" prints, by its columns: the header's words are not looked at.
std::vector<Distribution> distributionTable(std::string_view text);

// The first number of the form a.b.c or a.b.c.d, the words around it being in the user's language. Empty when there is
// none.
std::string versionNumber(std::string_view text);

} // namespace kelpctl
