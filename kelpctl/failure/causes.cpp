#include "failure/causes.h"

#include "asking/docker.h"
#include "failure/pull_causes.h"
#include "failure/wsl_causes.h"
#include "request/backend.h"
#include "request/request.h"

#include "lvm/commands.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

AdviceKey causeOfStart(const Run& run, const Context& context, const std::string& client)
{
    const Names names = namesOf(context.request);
    switch (askContainer(context.programs, client, names.container)) {
    case ContainerState::running:
        return "CONTAINER_RUNS_ALREADY";
    case ContainerState::paused:
        return "CONTAINER_PAUSED";
    case ContainerState::unknown:
        return causeOfSilentEngine(dockerSettings().choice);
    case ContainerState::stopped:
        // The engine makes the container before it finds that the image's program cannot be run.
        if (run.status == dockerRefused) {
            return "CONTAINER_EXISTS";
        }
        break;
    case ContainerState::missing:
        break;
    }
    if (!imageExists(context.programs, client, names.image)) {
        return "IMAGE_MISSING";
    }
    if (!imageHasProgram(context.programs, client, names.image)) {
        return "IMAGE_WITHOUT_PROGRAM";
    }
    const std::int32_t status = run.status.value_or(dockerRefused);
    return status == dockerNotExecutable ? AdviceKey("PROGRAM_NOT_EXECUTABLE")
           : status == dockerNotFound    ? AdviceKey("PROGRAM_NOT_FOUND")
                                         : AdviceKey("DOCKER_REFUSED");
}

AdviceKey causeOfDockerFailure(AdviceKey identifier, const Run& run, const Context& context)
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
    if (!askEngine(context.programs, client).reachable()) {
        return causeOfSilentEngine(dockerSettings().choice);
    }
    return rules::commandOf(run.arguments) == rules::Command::dockerPull ? causeOfPull(run) : AdviceKey();
}

// Windows has the program that looks others up, other systems do not.
bool lacksLookUp(const std::vector<Run>& runs)
{
    return std::any_of(runs.begin(), runs.end(),
                       [](const Run& run) { return run.programMissing && run.arguments.front() == "where"; });
}

} // namespace

AdviceKey causeOfSilentEngine(EngineChoice choice)
{
    switch (choice) {
    case EngineChoice::hostVariable:
    case EngineChoice::contextVariable:
        return "DOCKER_CHOICE_SILENT";
    case EngineChoice::configuration:
    case EngineChoice::builtIn:
        break;
    }
    return "DOCKER_ENGINE_NOT_REACHABLE";
}

bool isStatusWithoutWsl(std::int32_t status)
{
    constexpr std::array<std::int32_t, 2> statuses = {1, 50};
    return std::find(statuses.begin(), statuses.end(), status) != statuses.end();
}

AdviceKey causeOfMissingWsl(const Context& context)
{
    return lacksLookUp(context.journal.runs()) ? AdviceKey("LOOK_UP_MISSING") : AdviceKey("WSL_NOT_FOUND");
}

std::string codeOf(const Run& run)
{
    const std::string path = wslCodePath(run.output);
    return path.empty() ? wslCodePath(run.error) : path;
}

AdviceKey causeOfWslStatus(const Run& run)
{
    if (!run.status) {
        return {};
    }
    if (const std::string path = codeOf(run); !path.empty()) {
        const bool imports = rules::commandOf(run.arguments) == rules::Command::wslImport;
        return causeOfWslPath(path, imports ? WslWork::import : WslWork::other);
    }
    if (run.status == noSuchProgram) {
        return "WSL_NOT_FOUND";
    }
    return isStatusWithoutWsl(*run.status) ? AdviceKey("WSL_NOT_INSTALLED") : AdviceKey();
}

AdviceKey causeOf(AdviceKey identifier, const std::optional<Run>& run, const Context& context)
{
    if (identifier == "IMAGE_NOT_EXIST" && !isDockerName(namesOf(context.request).image)) {
        return "DOCKER_NAME_INVALID";
    }
    if (!run || run->succeeded()) {
        return {};
    }
    if (run->ending == Ending::timedOut) {
        return "TOOL_HANGS";
    }
    if (run->programMissing && lacksLookUp(context.journal.runs())) {
        return "LOOK_UP_MISSING";
    }
    // The check speaks of WSL, whichever backend is selected.
    switch (identifier == "WSL_NOT_USABLE" ? Backend::wsl : selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return causeOfDockerFailure(identifier, *run, context);
    }
    return causeOfWslStatus(*run);
}

AdviceKey causeOfInterruption(const std::optional<Run>& run)
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

} // namespace kelpctl
