#include "causes.h"

#include "backend.h"
#include "probes.h"
#include "verdict.h"

#include "lvm/commands.h"

#include <array>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

// What Windows' own wsl.exe answers when there is no WSL behind it.
constexpr std::array<std::int32_t, 2> notInstalled = {1, 50};

std::string causeOfStart(const Run& run, const Context& context, const std::string& client)
{
    const Names names = namesOf(context.request);
    switch (askContainer(context.console, client, names.container)) {
    case ContainerState::running:
        return "CONTAINER_RUNS_ALREADY";
    case ContainerState::paused:
        return "CONTAINER_PAUSED";
    case ContainerState::unknown:
        return "DOCKER_ENGINE_NOT_REACHABLE";
    case ContainerState::stopped:
        // The engine makes the container before it finds that the image's program cannot be run.
        if (run.result && run.result->status == dockerRefused) {
            return "CONTAINER_EXISTS";
        }
        break;
    case ContainerState::missing:
        break;
    }
    if (!imageExists(context.console, client, names.image)) {
        return "IMAGE_MISSING";
    }
    if (!imageHasProgram(context.console, client, names.image)) {
        return "IMAGE_WITHOUT_PROGRAM";
    }
    const std::int32_t status = run.result ? run.result->status : dockerRefused;
    return status == dockerNotExecutable ? "PROGRAM_NOT_EXECUTABLE"
           : status == dockerNotFound    ? "PROGRAM_NOT_FOUND"
                                         : "DOCKER_REFUSED";
}

std::string causeOfDockerFailure(const std::string& identifier, const Run& run, const Context& context)
{
    const std::string& client = run.arguments.front();
    if (identifier == "DOCKER_NOT_AVAILABLE" || rules::commandOf(run.arguments) == rules::Command::dockerLookUp) {
        return {};
    }
    if (identifier != "CONTAINER_NOT_STOPPED" && !isDockerName(namesOf(context.request).image)) {
        return "DOCKER_NAME_INVALID";
    }
    if (identifier == "CONTAINER_NOT_STARTED") {
        return causeOfStart(run, context, client);
    }
    return askEngine(context.console, client).reachable ? std::string() : "DOCKER_ENGINE_NOT_REACHABLE";
}

} // namespace

std::string causeOfWslStatus(const Run& run)
{
    if (!run.result) {
        return {};
    }
    const std::string printed = readableOutput(*run.result);
    if (const std::string_view known = causeOfWslCode(wslCodePath(printed)); !known.empty()) {
        return std::string(known);
    }
    if (run.result->status == noSuchProgram) {
        return "WSL_NOT_FOUND";
    }
    for (const std::int32_t status : notInstalled) {
        if (run.result->status == status) {
            return "WSL_NOT_INSTALLED";
        }
    }
    return {};
}

std::string causeOf(const std::string& identifier, const std::optional<Run>& run, const Context& context)
{
    if (identifier == "IMAGE_NOT_EXIST" && !isDockerName(namesOf(context.request).image)) {
        return "DOCKER_NAME_INVALID";
    }
    if (!run || !run->failed()) {
        return {};
    }
    if (run->timedOut) {
        return "TOOL_HANGS";
    }
    const bool wsl = usesWsl() || identifier == "WSL_NOT_USABLE";
    return wsl ? causeOfWslStatus(*run) : causeOfDockerFailure(identifier, *run, context);
}

std::string causeOfInterruption(const std::optional<Run>& run)
{
    switch (run ? rules::commandOf(run->arguments) : rules::Command::other) {
    case rules::Command::wslImport:
        return "IMPORT_LEFT";
    case rules::Command::dockerLoad:
    case rules::Command::dockerImport:
    case rules::Command::dockerPull:
    case rules::Command::dockerTag:
        return "IMAGE_LEFT";
    case rules::Command::dockerRun:
        return "CONTAINER_LEFT";
    case rules::Command::wslUnregister:
    case rules::Command::image:
    case rules::Command::container:
        return "REMOVAL_LEFT";
    default:
        return {};
    }
}

std::string importFolder(const std::optional<Run>& run)
{
    return run ? rules::importFolderOf(run->arguments) : std::string();
}

} // namespace kelpctl
