#include "docker.h"

#include "commands.h"
#include "files.h"
#include "frame.h"
#include "rules.h"
#include "runner.h"
#include "text.h"

#include "host/environment.h"
#include "host/files.h"
#include "host/install.h"
#include "host/text.h"

#include <iostream>

namespace orb::lvm::detail {

namespace files = foundation::core::path;

namespace {

template <class... Parts>
void logDetail(const Parts&... parts)
{
    log(dockerLogger(), Level::Detail, parts...);
}

std::string orHubImage(const std::string& imageName)
{
    return imageName.empty() ? addKVRelease(hubName) : imageName;
}

std::string orHubContainer(const std::string& containerName)
{
    return containerName.empty() ? hubName : containerName;
}

// The words that a query of the client printed.
std::vector<std::string> query(const std::vector<std::string>& arguments)
{
    const RunResult result = runCommand(arguments);
    return result.status == 0 ? words(result.standardOutput) : std::vector<std::string>{};
}

} // namespace

std::string getDockerExecutablePath()
{
    const RunResult lookup = runCommand(commands::dockerLookUp(), "c:");
    if (lookup.status != 0) {
        return {};
    }
    for (const std::string& candidate : trimmedLines(lookup.standardOutput)) {
        if (clientKindOf(candidate) == ClientKind::file) {
            return candidate;
        }
    }
    return std::string(trim(lookup.standardOutput));
}

std::vector<std::string> getImageRepositories()
{
    std::vector<std::string> repositories = query(commands::dockerImages(getDockerExecutablePath()));
    for (std::string& repository : repositories) {
        repository.erase(0, repository.rfind('/') + 1);
    }
    return repositories;
}

std::vector<std::string> getContainersByAncestor(const std::string& imageName)
{
    const std::string image = orHubImage(imageName);
    return query(commands::dockerContainers(getDockerExecutablePath(), image));
}

namespace {

std::string defaultTarFile(bool useRootFsArchive)
{
    using namespace foundation::core;
    const path::Pathname directory{getContainerTarsDirectory(), path::native_form};
    const DefaultArchives& archives = useRootFsArchive ? rootFsArchives : imageArchives;
    path::Pathname file = path::concatenate_pathname(directory, archives.preferred, path::native_form);
    if (!path::exists(file.text)) {
        file = path::concatenate_pathname(directory, archives.other, path::native_form);
    }
    return text::cvt_ustring_utf8(file.text);
}

// The import gets the caller's own image name, even when that is empty.
void loadArchive(const std::string& dockerPath, const std::string& tarFile, const std::string& imageName,
                 bool useRootFsArchive)
{
    const RunResult load = useRootFsArchive ? runCommand(commands::dockerImport(dockerPath, tarFile, imageName))
                                            : runCommand(commands::dockerLoad(dockerPath, tarFile));
    if (load.status != 0 && !load.standardError.empty()) {
        throwError(container_support::TAR_FILE_LOAD_ERROR{}, tarFile, orHubImage(imageName), load.standardError);
    }
}

} // namespace

void dockerImportFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
{
    logDetail("importFromTarIfNecessary: docker");
    const std::string dockerPath = getDockerExecutablePath();
    logDetail("importFromTarIfNecessary: dockerPath = ", dockerPath);
    if (!files::exists(toPath(dockerPath))) {
        log(dockerLogger(), Level::Error, "importFromTarIfNecessary: dockerPath doesn't exist");
        throwError(container_support::DOCKER_NOT_AVAILABLE{});
    }
    const std::vector<std::string> images = getImageRepositories();
    const std::string name = orHubImage(imageName);
    if (contains(images, name)) {
        return;
    }
    // Required even when the pull provides the image.
    const std::string tarFile = tarPath.empty() ? defaultTarFile(useRootFsArchive) : tarPath;
    if (!files::exists(toPath(tarFile))) {
        throwError(container_support::TAR_FILE_NOT_AVAILABLE{}, tarFile);
    }
    if (!pullImageFromRegistry("zqkelp", hubTag(), hubTag())) {
        loadArchive(dockerPath, tarFile, imageName, useRootFsArchive);
    }
    if (!contains(getImageRepositories(), name)) {
        throwError(container_support::IMAGE_NOT_EXIST{}, name);
    }
}

bool pullImageFromRegistry(const std::string& repository, const std::string& name, const std::string& tag)
{
    if (!useDockerRepository()) {
        return false;
    }
    const std::string reference = repository + "/" + name + ":" + tag;
    const std::string dockerPath = getDockerExecutablePath();
    RunResult command = runCommand(commands::dockerPull(dockerPath, reference));
    if (command.status == 0) {
        command = runCommand(commands::dockerTag(dockerPath, reference, addKVRelease(hubName)));
    }
    // Only text on standard error makes it a failure; an image that is missing all the same is found missing later.
    if (command.status == 0 || command.standardError.empty()) {
        return true;
    }
    std::cout << "ERROR in pullImageFromRegistry: " << command.standardError << std::endl;
    return false;
}

bool runHubContainer(const std::string& imageName, const std::string& containerName)
{
    const std::string dockerPath = getDockerExecutablePath();
    const std::vector<std::string> furtherArguments =
        words(foundation::core::env::variable("AUX_DOCKER_ARGS").value_or(""));
    return runCommand(
               commands::dockerRun(dockerPath, orHubContainer(containerName), furtherArguments, orHubImage(imageName)))
               .status == 0;
}

bool removeHubContainer(const std::string& containerName)
{
    const std::string dockerPath = getDockerExecutablePath();
    return runCommand(commands::dockerRemoveContainer(dockerPath, orHubContainer(containerName))).status == 0;
}

} // namespace orb::lvm::detail
