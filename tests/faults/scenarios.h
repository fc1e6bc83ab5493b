// What is tried on the simulated machine: an operation, and all that it depends on.
#pragma once

#include "simulation.h"

#include <string>
#include <vector>

namespace faults {

enum class Backend { wsl, docker };

// The archives of the install tree: packed, as they are, or none.
enum class Archives { packed, plain, none };

struct Scenario {
    std::string name;
    Backend backend = Backend::wsl;
    // What is called; see calls() in operations.cpp.
    std::string operation;
    State before = {};
    Archives archives = Archives::packed;
    bool registry = false;
    bool extraLogging = false;
    // The look-up is not there, and the Unix-style shell's is.
    bool which = false;
    // The host has this address on the network of WSL.
    std::string address = {};
    // AUX_DOCKER_ARGS; not set when it is empty.
    std::string auxiliary = {};
};

// Those that can be had on this system.
const std::vector<Scenario>& scenarios();
const Scenario& scenarioNamed(const std::string& name);

// Makes something exist, so that doing it once more changes nothing.
bool provisions(const Scenario& scenario);

// The names in operations that give one.
inline constexpr char otherName[] = "other_name";
inline constexpr char otherContainer[] = "other_container";

} // namespace faults
