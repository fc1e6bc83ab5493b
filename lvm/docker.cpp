#include "docker.h"

#include "files.h"
#include "frame.h"
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

// The host product ships programs of its own in such a folder; they are never the user's Docker client.
bool isInHostTree(const std::string& path)
{
    return path.find("bin\\win64") != std::string::npos;
}

// Each test converts the path afresh.
bool isClient(const std::string& path)
{
    return !isInHostTree(path) && files::exists(toPath(path)) && !files::is_link(toPath(path)) &&
           files::is_regular_file(toPath(path));
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
    const RunResult lookup = runCommand({"where", "docker.exe"}, "c:");
    if (lookup.status != 0) {
        return {};
    }
    for (const std::string& candidate : trimmedLines(lookup.standardOutput)) {
        if (isClient(candidate)) {
            return candidate;
        }
    }
    return std::string(trim(lookup.standardOutput));
}

std::vector<std::string> getImageRepositories()
{
    std::vector<std::string> repositories = query({getDockerExecutablePath(), "images", "--format", "{{.Repository}}"});
    for (std::string& repository : repositories) {
        repository.erase(0, repository.rfind('/') + 1);
    }
    return repositories;
}

std::vector<std::string> getContainersByAncestor(const std::string& imageName)
{
    const std::string filter = "ancestor=" + orHubImage(imageName);
    return query({getDockerExecutablePath(), "container", "ls", "-f", filter, "--format", "{{.Names}}"});
}

namespace {

std::string defaultTarFile(bool useRootFsArchive)
{
    using namespace foundation::core;
    const path::Pathname directory{getContainerTarsDirectory(), path::native_form};
    const char16_t* name = useRootFsArchive ? u"kelp_hub_distro.tar.gz" : u"kelp_hub_docker.tar.gz";
    path::Pathname file = path::concatenate_pathname(directory, name, path::native_form);
    if (!path::exists(file.text)) {
        file = path::concatenate_pathname(directory, u"kelp_hub_docker.tar", path::native_form);
    }
    return text::cvt_ustring_utf8(file.text);
}

// The import gets the caller's own image name, even when that is empty.
void loadArchive(const std::string& dockerPath, const std::string& tarFile, const std::string& imageName,
                 bool useRootFsArchive)
{
    const RunResult load = useRootFsArchive ? runCommand({dockerPath, "import", tarFile, imageName})
                                            : runCommand({dockerPath, "load", "-i", tarFile});
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
    RunResult command = runCommand({dockerPath, "pull", "-q", reference});
    if (command.status == 0) {
        command = runCommand({dockerPath, "tag", reference, addKVRelease(hubName)});
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
    std::vector<std::string> arguments = {getDockerExecutablePath(), "run", "-di", "--network=host",
                                          "--name=" + orHubContainer(containerName)};
    if (const auto extra = foundation::core::env::variable("AUX_DOCKER_ARGS")) {
        for (std::string& word : words(*extra)) {
            arguments.push_back(std::move(word));
        }
    }
    arguments.push_back(orHubImage(imageName));
    return runCommand(arguments).status == 0;
}

bool removeHubContainer(const std::string& containerName)
{
    return runCommand({getDockerExecutablePath(), "container", "rm", "-f", orHubContainer(containerName)}).status == 0;
}

} // namespace orb::lvm::detail
