// What the library promises: a second, independent writing-down of each operation, on the simulated machine. It gives
// the outcome that a run of the library is then held to.
#pragma once

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

enum class Backend { wsl, docker };

struct Scenario {
    std::string name;
    Backend backend = Backend::wsl;
    // What is called; see perform() in operations.cpp.
    std::string operation;
    State before;
    bool registry = false;
    bool extraLogging = false;
    bool uncompressed = false;
    // The look-up is not there, and the Unix-style shell's is.
    bool which = false;
};

const std::vector<Scenario>& scenarios();
const Scenario& scenarioNamed(const std::string& name);

// Where things lie, in native form. Folders end in a separator.
struct Places {
    std::string programs;
    std::string archives;
};

// The programs that misbehave, and when.
struct Plan {
    Fault fault = Fault::none;
    // Counted from 1; only programs that could be started count.
    int call = 0;
    // The program of that call, which is gone from the end of the call before it.
    std::string program;
};

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

    void operation(const std::string& name);
    void logLine(const std::string& channel, std::uint32_t severity, const std::string& text);
    void detail(const std::string& channel, const std::string& text) { logLine(channel, 8, text); }
    void error(const std::string& channel, const std::string& text) { logLine(channel, 512, text); }

    Answer run(const std::vector<std::string>& command);
    bool isBroken(const std::string& program, Fault how) const;
    bool isProgramFile(const std::string& path) const;

    std::string wslPath();
    std::string findWsl();
    std::vector<std::string> distributions(bool running);
    void wslImport();
    void startDistribution();
    std::string dockerPath();
    std::vector<std::string> images();
    bool pull();
    void dockerImport(bool rootFs);
    void clear();

    const Scenario& scenario_;
    Places places_;
    State state_;
    std::optional<std::string> keptWslPath_;
    Plan plan_;
    int calls_ = 0;
    Outcome outcome_;
};

} // namespace faults
