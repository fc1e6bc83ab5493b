// What the library promises, written down from the description of its interface and from nothing else: the outcome that
// a run of the library on the simulated machine is held to. It must never be made to follow the library's code.
#pragma once

#include "scenarios.h"
#include "simulation.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace faults {

struct LogLine {
    std::string channel;
    std::uint32_t severity = 0;
    std::string text;

    bool operator==(const LogLine&) const = default;
};

// Everything that can be seen of one call.
struct Outcome {
    // "returns", the value, or the error's identifier or type.
    std::string result;
    // The arguments of an error of the catalogue.
    std::vector<std::string> arguments;
    std::vector<LogLine> log;
    // The programs that were started, with their arguments.
    std::vector<std::vector<std::string>> calls;
    // What the library wrote to its own standard output.
    std::string printed;

    bool operator==(const Outcome&) const = default;
};

// Where things lie, in native form. Folders end in a separator.
struct Places {
    std::string programs;
    std::string archives;
    // An archive outside the install tree.
    std::string givenArchive;
};

// The programs that misbehave, and when.
struct Plan {
    Fault fault = Fault::none;
    // Counted from 1; only programs that could be started count.
    int call = 0;
    // The program of that call, below the programs' folder, which is gone from the end of the call before it.
    std::string program;
};

// The name of a program below the programs' folder, as the machine and the plan know it.
std::string relativeProgram(const Places& places, const std::string& command);

// A process that uses the library. What the library keeps for the life of a process is kept here too.
class Model {
public:
    Model(const Scenario& scenario, Places places, State state);

    // What a call of the scenario's operation comes to.
    Outcome perform(const Plan& plan);

    const State& state() const { return state_; }

private:
    struct Thrown {
        std::string result;
        std::vector<std::string> arguments;
    };
    struct Found {
        std::string folder;
        bool exists = false;
    };

    bool usesWsl() const { return scenario_.backend == Backend::wsl; }
    void detail(const char* channel, const std::string& text);
    void error(const char* channel, const std::string& text);

    // The host's services.
    Answer run(const std::vector<std::string>& command);
    Entry whatIsAt(const std::string& path) const;
    bool isSpoilt(const std::string& program, Fault how) const;
    std::string toPath(const std::string& text) const;
    bool archiveExists(const std::string& path) const;

    // The programs of the backends.
    std::string chosenWsl();
    std::string getExecutablePath();
    std::string getDockerExecutablePath();
    std::string executablePath();
    std::string defaultArchive(const std::string& packed, const std::string& plain) const;

    std::vector<std::string> getDistros(bool onlyRunning);
    void wslImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName);
    void wakeDistribution();

    std::vector<std::string> getImageRepositories();
    bool pullImageFromRegistry();
    void dockerImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool rootFs);
    bool runHubContainer(const std::string& imageName, const std::string& containerName);
    bool removeHubContainer(const std::string& containerName);

    // What hosts call.
    std::string operation(const std::string& name);
    void importFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool rootFs);
    void clearDistroImage(const std::string& imageName);
    std::string startContainerIfNecessary(const std::string& containerName, const std::string& imageName);
    std::string stopContainerIfNecessary(const std::string& containerName);
    std::string getContainerCommandPrefix(const std::string& name);
    std::vector<std::string> getContainerArgumentsPrefix(const std::string& name);
    std::string wslCheck();

    const Scenario& scenario_;
    Places places_;
    State state_;
    std::optional<std::string> keptWsl_;
    Plan plan_;
    int calls_ = 0;
    Outcome outcome_;
};

} // namespace faults
