#include "doctor/docker_engine.h"

#include "doctor/docker_client.h"
#include "failure/causes.h"
#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

bool hangs(const DockerExamination& docker)
{
    const auto runs = {&docker.engine.answer, &docker.imageListing, &docker.containerListing};
    return std::any_of(runs.begin(), runs.end(), [](const Run* run) { return run->ending == Ending::timedOut; });
}

const char* productName(DockerProduct product)
{
    constexpr std::array names = {"engine", "desktop", "podman"};
    return names.at(static_cast<std::size_t>(product));
}

std::string engineText(const DockerEngine& engine)
{
    std::string text = "version " + (engine.version.empty() ? "not known" : engine.version);
    text += engine.system.empty() ? "" : " for " + engine.system;
    text += engine.platform.empty() ? "" : ", " + engine.platform;
    return text + (engine.product == DockerProduct::podman ? ", podman" : "");
}

const char* choiceName(EngineChoice choice)
{
    constexpr std::array names = {"DOCKER_HOST", "DOCKER_CONTEXT", "configuration", "builtIn"};
    return names.at(static_cast<std::size_t>(choice));
}

std::string choiceText(const DockerSettings& settings)
{
    switch (settings.choice) {
    case EngineChoice::hostVariable:
        return "none: DOCKER_HOST is \"" + settings.chosen + "\"";
    case EngineChoice::contextVariable:
        return settings.chosen + " (DOCKER_CONTEXT)";
    case EngineChoice::configuration:
        return settings.chosen + " (the client's configuration)";
    case EngineChoice::builtIn:
        break;
    }
    return settings.chosen + " (nothing names another)";
}

} // namespace

bool hasEngine(const Examination& found)
{
    return hasClient(found) && !hangs(found.docker) && found.docker.engine.reachable();
}

void examineEngine(const Context& context, Examination& found)
{
    if (found.docker.clientExists) {
        found.docker.engine = askEngine(context.programs, found.docker.client);
    }
}

void judgeEngine(const Examination& found, Findings& findings)
{
    const DockerExamination& docker = found.docker;
    if (!hasClient(found)) {
        return;
    }
    if (hangs(docker)) {
        findings.problem("TOOL_HANGS", fileName(docker.client));
    } else if (!docker.engine.reachable()) {
        findings.problem(causeOfSilentEngine(docker.settings.choice));
    } else if (docker.imageListing.succeeded() && docker.engine.system == "windows") {
        findings.problem("DOCKER_RUNS_WINDOWS_CONTAINERS");
    }
}

void judgeProduct(const Examination& found, Findings& findings)
{
    if (!hasEngine(found)) {
        return;
    }
    switch (found.docker.engine.product) {
    case DockerProduct::desktop:
        findings.note("HOST_NETWORKING_OPTIONAL");
        return;
    case DockerProduct::podman:
        findings.note("DOCKER_IS_PODMAN");
        return;
    case DockerProduct::engine:
        break;
    }
}

void describeEngine(const Examination& found, CheckOutput& out)
{
    const DockerEngine& engine = found.docker.engine;
    out.member("docker",
               "engine") = {{"reachable", engine.reachable()},
                            {"version", textOrNull(engine.version)},
                            {"system", textOrNull(engine.system)},
                            {"product", engine.reachable() ? json::value(productName(engine.product)) : nullptr},
                            {"platform", textOrNull(engine.platform)},
                            {"reply", runObject(engine.answer)}};
    if (!found.docker.clientExists) {
        return;
    }
    if (engine.reachable()) {
        out.judged("engine", engineText(engine));
        return;
    }
    out.judged("engine", "cannot be reached: " + out.endingText(engine.answer));
    out.said(engine.answer.error);
}

void examineContext(const Context& context, Examination& found)
{
    DockerExamination& docker = found.docker;
    docker.settings = dockerSettings();
    const bool answers = docker.clientExists && docker.engine.answer.ending == Ending::exited;
    // What podman has in that place tells nothing.
    if (answers && docker.engine.product != DockerProduct::podman) {
        docker.endpoint = askEndpoint(context.programs, docker.client);
    }
}

void describeContext(const Examination& found, CheckOutput& out)
{
    const DockerExamination& docker = found.docker;
    out.member("docker", "context") = {{"chosen", textOrNull(docker.settings.chosen)},
                                       {"source", choiceName(docker.settings.choice)},
                                       {"endpoint", textOrNull(docker.endpoint)}};
    if (docker.clientExists) {
        out.row("context", choiceText(docker.settings));
        out.row("endpoint", docker.endpoint.empty() ? "not known" : docker.endpoint);
    }
}

} // namespace kelpctl
