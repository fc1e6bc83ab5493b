// A Docker engine of the tests' own (scripts/docker-engine), emptied before and after each test, and the real client
// behind the name docker.exe.
#pragma once

#include "machine.h"

#include <filesystem>
#include <string>
#include <vector>

class DockerEngine {
public:
    DockerEngine();
    ~DockerEngine();
    DockerEngine(const DockerEngine&) = delete;
    DockerEngine& operator=(const DockerEngine&) = delete;

    // Runs the client.
    orb::process::detail::RunResult run(std::vector<std::string> arguments) const;
    // "repository:tag" of all images; names of the running containers, or of all.
    std::vector<std::string> images() const;
    std::vector<std::string> runningContainers() const;
    std::vector<std::string> containers() const;

    // An archive that the engine's start made; see scripts/docker-engine.
    static std::filesystem::path archive(const std::string& name);

private:
    void clear() const;

    EnvironmentVariable backend_;
    EnvironmentVariable host_;
    StandIns standIns_;
};
