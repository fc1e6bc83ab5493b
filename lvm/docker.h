// The Docker backend. Nothing here is cached: each function looks for the client again.
#pragma once

#include <string>
#include <vector>

namespace orb::lvm::detail {

// The path of the Docker client: the first docker.exe on the search path that is a regular file, no link and not inside
// a "bin\win64" folder; when none is, everything that the look-up printed; empty when the look-up failed.
// Throws std::filesystem::filesystem_error, or std::system_error for a path that is not well-formed.
std::string getDockerExecutablePath();

// The repository names of all local images, each without registry and path. Empty when the client fails.
std::vector<std::string> getImageRepositories();

// The names of the running containers of an image (empty: the hub's). Empty when the client fails. No operation of
// the library asks yet.
std::vector<std::string> getContainersByAncestor(const std::string& imageName);

// The Docker side of orb::lvm::importFromTarIfNecessary.
void dockerImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive);

// Pulls "repository/name:tag" and tags it as the hub image, if the user has enabled that. True when neither command
// reported an error.
bool pullImageFromRegistry(const std::string& repository, const std::string& name, const std::string& tag);

// Start and remove a container; empty names are the defaults. True when the client's status is 0.
bool runHubContainer(const std::string& imageName, const std::string& containerName);
bool removeHubContainer(const std::string& containerName);

} // namespace orb::lvm::detail
