// Queries to the Docker client that change nothing.
#pragma once

#include "asking/run.h"

#include <string>

namespace kelpctl {

// What stands behind the client's name.
enum class DockerProduct { engine, desktop, podman };

struct DockerEngine {
    // What the client and the engine tell about themselves, empty when they do not.
    std::string clientVersion;
    std::string version;
    // "linux", or "windows" for an engine that runs Windows containers.
    std::string system;
    DockerProduct product = DockerProduct::engine;
    // The engine's name for it, such as "Docker Desktop 4.34.2 (167172)".
    std::string platform;
    Run answer;

    bool reachable() const { return answer.succeeded(); }
};

DockerEngine askEngine(const Programs& programs, const std::string& client);

// Where the client looks for the engine, such as "npipe:////./pipe/docker_engine". Empty when it does not tell.
std::string askEndpoint(const Programs& programs, const std::string& client);

enum class ContainerState { unknown, missing, stopped, paused, running };

// The state of the container of that name. Unknown when the engine does not answer.
ContainerState askContainer(const Programs& programs, const std::string& client, const std::string& container);

// Whether the engine has an image of that name. False as well when the engine does not answer.
bool imageExists(const Programs& programs, const std::string& client, const std::string& image);

// Whether the image names a program that its containers run.
bool imageHasProgram(const Programs& programs, const std::string& client, const std::string& image);

} // namespace kelpctl
