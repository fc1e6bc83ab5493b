#pragma once

#include "process.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace stand_in {

struct Distribution {
    std::string name;
    // "Installed", "Installing" or "Uninstalling".
    std::string state;
    // Random, as registry keys are; it decides the order of the list.
    std::string id;
    int version = 2;
    std::filesystem::path basePath;
    // The process that installs or uninstalls it.
    ProcessId worker;
    // What keeps it running: programs of this kind that wait, and what they started inside.
    std::vector<ProcessId> clients;
    std::vector<ProcessId> programs;
    std::int64_t lastClientEnd = 0;
};

std::filesystem::path rootFileSystem(const Distribution& distribution);
std::filesystem::path disk(const Distribution& distribution);

bool isInstalled(const Distribution& distribution);
bool isBusy(const Distribution& distribution);
bool isRunning(const Distribution& distribution);

// Ends everything that runs inside.
void stop(Distribution& distribution);

bool sameName(std::string_view left, std::string_view right);

// The registered distributions, locked against every other process while this object lives.
class Registry {
public:
    Registry();
    ~Registry();
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    void save() const;

    // Null when there is none. Case does not matter.
    Distribution* find(std::string_view name);
    void remove(std::string_view name);

    std::string defaultName;
    std::vector<Distribution> distributions;

private:
    void load();

    std::filesystem::path folder;
    int lock = -1;
};

} // namespace stand_in
